#pragma once
// Advanced options (paths like "/UserVars/TolmTimeOut") and user options
// (flat names like "PXEBootEnabled"). Throws HostCtl::Lib::HostCtlException
// on failure.
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace HostCtl::Adv {

class AdvancedOption {
public:
    virtual ~AdvancedOption() = default;
    const std::string& GetName() const { return _path; }
    const std::string& GetDescription() const { return _description; }

protected:
    AdvancedOption(std::string path, std::string description)
        : _path(std::move(path)), _description(std::move(description)) {}

private:
    std::string _path;
    std::string _description;
};

// Reads return the value seen when the option was found; SetValue changes the
// host and the object.
class AdvancedIntegerOption : public AdvancedOption {
public:
    AdvancedIntegerOption(std::string path, std::string description, int64_t value, int64_t defaultValue,
                          int64_t min, int64_t max)
        : AdvancedOption(std::move(path), std::move(description)),
          _value(value), _default(defaultValue), _min(min), _max(max) {}
    int64_t GetValue() const { return _value; }
    int64_t GetDefault() const { return _default; }
    int64_t GetMin() const { return _min; }
    int64_t GetMax() const { return _max; }
    // Refused outside [min, max].
    void SetValue(int64_t value);

private:
    int64_t _value, _default, _min, _max;
};

class AdvancedStringOption : public AdvancedOption {
public:
    AdvancedStringOption(std::string path, std::string description, std::string value, std::string defaultValue)
        : AdvancedOption(std::move(path), std::move(description)),
          _value(std::move(value)), _default(std::move(defaultValue)) {}
    const std::string& GetValue() const { return _value; }
    const std::string& GetDefault() const { return _default; }
    void SetValue(const std::string& value);

private:
    std::string _value, _default;
};

}  // namespace HostCtl::Adv

namespace TarnCtl::Adv {

class AdvancedOptionImpl {
public:
    // Null when no option has that path. Use dynamic_cast to learn its type.
    std::unique_ptr<HostCtl::Adv::AdvancedOption> FindOption(const std::string& path);

    bool HasUserOption(const std::string& name);
    std::optional<std::string> GetUserOption(const std::string& name);
    void SetUserOption(const std::string& name, const std::string& value);
    void RemoveUserOption(const std::string& name);
};

}  // namespace TarnCtl::Adv
