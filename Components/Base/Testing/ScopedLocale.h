// Test helper: switches the process's C locale for one scope.
#pragma once

#include <clocale>
#include <string>

#include <gtest/gtest.h>

class ScopedLocale {
public:
    explicit ScopedLocale(const char* name) : saved_(std::setlocale(LC_ALL, nullptr)) {
        EXPECT_NE(std::setlocale(LC_ALL, name), nullptr) << "locale " << name << " is missing";
    }
    ~ScopedLocale() { std::setlocale(LC_ALL, saved_.c_str()); }
    ScopedLocale(const ScopedLocale&) = delete;
    ScopedLocale& operator=(const ScopedLocale&) = delete;

private:
    std::string saved_;
};
