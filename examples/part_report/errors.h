#pragma once
// The ways in which the program can fail. Each is one line on the terminal; main.cpp gives them their exit codes.

#include <cstddef>
#include <stdexcept>
#include <string>

namespace part_report {

/// The part's file cannot be used: says where, and what was expected there.
class InputError : public std::runtime_error {
public:
    InputError(const std::string& file, std::size_t line, const std::string& expected)
        : std::runtime_error(file + ":" + std::to_string(line) + ": expected " + expected)
    {}
};

/// The command line makes no sense.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A result cannot be written.
class OutputError : public std::runtime_error {
public:
    OutputError(const std::string& file, const std::string& reason) : std::runtime_error(file + ": " + reason) {}
};

} // namespace part_report
