// Preferences in memory.
#pragma once

#include <map>
#include <string>
#include <string_view>

#include "admin/Settings.h"

namespace quillary {

class TestSettings : public Settings {
  public:
    std::map<std::string, std::int32_t, std::less<>> numbers;
    std::map<std::string, std::string, std::less<>> texts;
    std::string whyNot;  // when it is not empty, nothing can be kept

    std::int32_t ReadInt(std::string_view name, std::int32_t fallback) const override {
        const auto found = numbers.find(name);
        return found == numbers.end() ? fallback : found->second;
    }
    std::string ReadText(std::string_view name, std::string_view fallback) const override {
        const auto found = texts.find(name);
        return found == texts.end() ? std::string(fallback) : found->second;
    }
    bool WriteInts(std::span<const Number> written, std::string& reason) override {
        reason = whyNot;
        if (!whyNot.empty()) return false;
        for (const Number& number : written) numbers.insert_or_assign(std::string(number.name), number.value);
        return true;
    }
    bool WriteText(std::string_view name, std::string_view value) override {
        texts.insert_or_assign(std::string(name), std::string(value));
        return true;
    }
};

}  // namespace quillary
