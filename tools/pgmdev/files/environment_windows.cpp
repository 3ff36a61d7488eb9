#include <memory>

#include <windows.h>

#include "files/environment.h"
#include "gen.h"
#include "wide_text.h"

std::map<std::string, std::string> environment_variables() {
    std::map<std::string, std::string> variables;
    const std::unique_ptr<WCHAR, decltype(&FreeEnvironmentStringsW)> all(GetEnvironmentStringsW(),
                                                                         &FreeEnvironmentStringsW);
    for (const WCHAR* entry = all.get(); entry != nullptr && *entry != 0;) {
        const std::wstring wide = entry;
        entry += wide.size() + 1;
        const std::size_t equals = wide.find(L'=', 1);  // drives' current directories begin with one
        if (equals != std::wstring::npos) {
            variables.emplace(gen_ascii_toupper(utf8_from_wide(wide.substr(0, equals))),
                              utf8_from_wide(wide.substr(equals + 1)));
        }
    }
    return variables;
}

std::string environment_text(const std::string& name) {
    const auto variables = environment_variables();
    const auto found = variables.find(gen_ascii_toupper(name));
    return found != variables.end() ? found->second : "";
}
