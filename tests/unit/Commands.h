// The commands of a transcript: functions whose arguments stand behind the command's name.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <tuple>
#include <type_traits>

#include "System/AppFiles.h"

using Commands = std::map<std::string, std::function<void()>>;

class CCommandLine {
  public:
    void Set(const std::string& text) { m_words = std::istringstream(text); }

    // The next word as a number, or as a file of the application directory; all that is left as a text.
    template <typename Value>
    Value Get() {
        if constexpr (std::is_same_v<Value, std::string>) {
            m_words >> std::ws;
            return {std::istreambuf_iterator<char>(m_words), {}};
        } else {
            std::string word;
            m_words >> word;
            if constexpr (std::is_same_v<Value, std::filesystem::path>)
                return kAppDirectory / std::filesystem::path(word);
            else if constexpr (std::is_floating_point_v<Value>)
                return static_cast<Value>(std::strtod(word.c_str(), nullptr));
            else
                return static_cast<Value>(std::strtoull(word.c_str(), nullptr, 10));
        }
    }

    // The command that calls `act`, or an operation of `object` whose result other than 0 is shown, or sets a
    // field.
    template <typename Act>
    std::function<void()> Call(Act act) {
        return Bound(std::function(std::move(act)));
    }
    template <typename Object, typename Class, typename Result, typename... Arguments>
    std::function<void()> Call(Object& object, Result (Class::*operation)(Arguments...)) {
        return Bound(std::function<void(Arguments...)>([&object, operation](Arguments... arguments) {
            if constexpr (std::is_void_v<Result>)
                (object.*operation)(arguments...);
            else if (const Result result = (object.*operation)(arguments...); result != 0)
                std::printf("returns %d\n", result);
        }));
    }
    template <typename Value>
    std::function<void()> Set(Value& field) {
        return [this, &field] { field = Get<Value>(); };
    }

    std::string input;  // lines behind the command
    int exit = 0;       // what it ends with

  private:
    template <typename Result, typename... Arguments>
    std::function<void()> Bound(std::function<Result(Arguments...)> act) {
        return [=] {
            const std::tuple<std::decay_t<Arguments>...> arguments{Get<std::decay_t<Arguments>>()...};
            std::apply(act, arguments);
        };
    }

    std::istringstream m_words;
};
