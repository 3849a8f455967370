#include "System/StringToolkit.h"

#include <gtest/gtest.h>

namespace {

std::vector<std::string> Split(const char* source, const char* delimiters) {
    CStringList list;
    CStringList::Split(CString(source), delimiters, list);
    std::vector<std::string> pieces(static_cast<std::size_t>(list.Count()));
    for (int i = 0; i < list.Count(); ++i) pieces[static_cast<std::size_t>(i)] = list.At(i).c_str();
    return pieces;
}

TEST(StringToolkit, Split) {
    struct Case {
        const char* source;
        const char* delimiters;
        std::vector<std::string> pieces;
    };
    const Case cases[] = {
        {"chargport_number=2", "=", {"chargport_number", "2"}},
        {"a=b=c", "=", {"a", "b=c"}},
        {"key=", "=", {"key", ""}},
        {"=5", "=", {"", "5"}},
        {"=", "=", {"", ""}},
        {"abc", "=", {"abc"}},
        {"", "=", {}},
        {"", "", {""}},
        {"a,b;c", "", {"a,b;c"}},
        {"a,b;c", ",;", {"a", "b", "c"}},
        {"a,b;c", ";,", {"a,b", "c"}},
        {"a,,b", ",,", {"a", "", "b"}},
        {"a,", ",;", {"a", ""}},
    };
    for (const Case& c : cases) EXPECT_EQ(c.pieces, Split(c.source, c.delimiters)) << c.source;
}

TEST(StringToolkit, ListAppendsAndAnswersOutsideItself) {
    CStringList list;
    EXPECT_EQ(0, list.Add(CString("first")));
    CStringList::Split(CString("a=b"), "=", list);
    EXPECT_EQ(3, list.Count());
    EXPECT_STREQ("b", list.At(2).c_str());
    for (const int outside : {-1, 3, 5}) EXPECT_STREQ("", list.At(outside).c_str()) << outside;
    list.Clear();
    EXPECT_EQ(0, list.Count());
}

TEST(StringToolkit, CopiesShareUntilOneChanges) {
    CString text("ab");
    const CString copy(text);
    EXPECT_EQ(static_cast<const void*>(text.c_str()), copy.c_str());
    (text += "c") += text;
    EXPECT_STREQ("abcabc", text.c_str());
    EXPECT_STREQ("ab", copy.c_str());
    text = text.c_str() + 4;  // a part of its own text
    EXPECT_TRUE(text == "bc");
    EXPECT_FALSE(text == "b" || text == "bcd" || text == "");
    text = nullptr;
    EXPECT_STREQ("", (text += nullptr).c_str());
    EXPECT_EQ(4294967295U, CString("4294967297").ToUnsigned());
}

}  // namespace
