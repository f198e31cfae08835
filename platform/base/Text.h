// UTF-8 text.
#pragma once

#include <string>
#include <string_view>

namespace valdren::platform {

bool isUTF8(std::string_view text);
/// The text with every byte that belongs to no UTF-8 character replaced by U+FFFD.
std::string repairedUTF8(std::string_view text);
/// The text in lower case by Unicode's rules; bytes that are not UTF-8 stay.
std::string lowercase(std::string_view text);
/// The text without white space, line breaks and byte order marks at its ends.
std::string_view trimmed(std::string_view text);

}  // namespace valdren::platform
