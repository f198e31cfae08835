// Texts in the person's language.
#pragma once

#include <string>

namespace valdren::platform {

/// From now on texts come from the catalogues of this domain: those in the folder "locale" beside
/// the program, else the installed ones. To be called once, before the first text.
void setTranslations(const std::string& domain);

/// The text in the person's language, or the text itself when it has no translation.
std::string translated(const std::string& text);

}  // namespace valdren::platform
