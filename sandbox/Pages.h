// The files under pages/, which are compiled into the program.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace sandbox {

/// The file's content; empty when there is no such file.
std::string page(std::string_view name);

/// The text with each "{{key}}" replaced by its value. Values are not searched again; unknown keys
/// stay.
std::string filled(std::string_view text,
                   std::initializer_list<std::pair<std::string_view, std::string_view>> values);

}  // namespace sandbox
