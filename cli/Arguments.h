// The words and options behind a command's name.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillary {

class Arguments {
  public:
    std::vector<std::string> words;
    std::map<std::string_view, std::vector<std::string>> options;  // by name; a flag has no value

    [[nodiscard]] bool Has(std::string_view option) const { return options.contains(option); }
    /// Of an option that is given once.
    [[nodiscard]] std::optional<std::string> Value(std::string_view option) const {
        const auto found = options.find(option);
        if (found == options.end() || found->second.empty()) return std::nullopt;
        return found->second.front();
    }
    /// Of an option that may be given several times.
    [[nodiscard]] std::vector<std::string> Values(std::string_view option) const {
        const auto found = options.find(option);
        return found == options.end() ? std::vector<std::string>() : found->second;
    }
};

}  // namespace quillary
