#pragma once
#include <exception>
#include <string>
#include <utility>

namespace HostCtl::Lib {

// The one way the host library reports a failed query or change.
class HostCtlException : public std::exception {
public:
    explicit HostCtlException(std::string message) : _message(std::move(message)) {}
    const char* what() const noexcept override { return _message.c_str(); }

private:
    std::string _message;
};

}  // namespace HostCtl::Lib
