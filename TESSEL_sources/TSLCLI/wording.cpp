#include "TSLCLI/wording.h"

std::string Quoted(std::string_view name) {
    return std::string("'").append(name).append("'");
}

std::string Listed(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names) text += (text.empty() ? "" : ", ") + Quoted(name);
    return text;
}

std::string Counted(std::size_t n, const std::string& one, const std::string& several) {
    return std::to_string(n) + " " + (n == 1 ? one : several);
}
