// The files under pages/, which travel inside the program.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace sandbox {

/// The file's content; empty when there is no such file.
std::string page(std::string_view name);

/// The text with each "{{key}}" replaced by its value. Values are put in as they stand and are not
/// searched again; a key that is not given stays.
std::string filled(std::string_view text,
                   std::initializer_list<std::pair<std::string_view, std::string_view>> values);

}  // namespace sandbox
