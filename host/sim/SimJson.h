#pragma once
// Typed access to the state file's JSON with the host library's failures:
// a missing or ill-typed field is a HostCtlException naming its pointer.
#include "host/HostCtlException.h"

#include <nlohmann/json.hpp>
#include <string>

namespace Tolm::HostSim {

using json = nlohmann::json;

inline const json* Find(const json& state, const std::string& pointer)
{
    json::json_pointer p(pointer);
    if (!state.contains(p))
        return nullptr;
    return &state.at(p);
}

template <typename T>
T Get(const json& state, const std::string& pointer)
{
    const json* value = Find(state, pointer);
    if (!value)
        throw HostCtl::Lib::HostCtlException("host state has no " + pointer);
    try {
        return value->get<T>();
    } catch (const json::exception&) {
        throw HostCtl::Lib::HostCtlException("host state field " + pointer + " has the wrong type");
    }
}

template <typename T>
T GetOr(const json& state, const std::string& pointer, T fallback)
{
    const json* value = Find(state, pointer);
    if (!value || value->is_null())
        return fallback;
    try {
        return value->get<T>();
    } catch (const json::exception&) {
        throw HostCtl::Lib::HostCtlException("host state field " + pointer + " has the wrong type");
    }
}

// The array at `pointer`, created empty when missing.
inline json& ArrayAt(json& state, const std::string& pointer)
{
    json& value = state[json::json_pointer(pointer)];
    if (value.is_null())
        value = json::array();
    if (!value.is_array())
        throw HostCtl::Lib::HostCtlException("host state field " + pointer + " is not a list");
    return value;
}

// The element of array `list` whose "name" is `name`, or null.
inline json* FindNamed(json& list, const std::string& name)
{
    if (!list.is_array())
        return nullptr;
    for (auto& item : list)
        if (item.is_object() && item.value("name", std::string()) == name)
            return &item;
    return nullptr;
}

inline const json* FindNamed(const json& list, const std::string& name)
{
    return FindNamed(const_cast<json&>(list), name);
}

}  // namespace Tolm::HostSim
