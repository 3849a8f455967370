// What is known of the bodies, message by message.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "ipc/BodyField.h"
#include "tools/zorctl/messages/Decode.h"

// Fills the fields or the document of `decoded` from `length` bytes at `body`. False, with no field added,
// where the code has no decoder or the body is not what it expects; `trouble` then says what is wrong with
// it, and also after success where there is more than was decoded.
bool DecodeBody(std::uint16_t code, const std::uint8_t* body, std::size_t length, DecodedFrame& decoded,
                std::string& trouble);

// The number in a Number, BigEndian or Fixed field of the body, entry or area at `base`.
std::uint64_t GetField(const std::uint8_t* base, const BodyField& field);

// True for the name of a field that a message of this code can show.
bool KnowsField(std::uint16_t code, const std::string& name);
