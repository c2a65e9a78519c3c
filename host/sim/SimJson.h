#pragma once
#ifndef TOLM_HOST_BACKEND_SIM
#error "Only the program that chooses the host backend, tolm-hostsim and tests use the simulated host directly"
#endif
// Typed access to the state file's JSON with the host library's failures:
// a missing or ill-typed field is a HostCtlException naming its pointer.
// The build turns on the JSON library's diagnostics, so its own errors carry
// the pointer of the value they concern; keep values read by reference into
// the loaded state (not copies of parts of it) so that pointer is whole.
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

// "host state: /network/pnics/0/name: expected a string, found a number"
std::string DescribeJsonError(const json::exception& e);

template <typename T>
T Get(const json& state, const std::string& pointer)
{
    const json* value = Find(state, pointer);
    if (!value)
        throw HostCtl::Lib::HostCtlException("host state: " + pointer + ": missing");
    try {
        return value->get<T>();
    } catch (const json::exception& e) {
        throw HostCtl::Lib::HostCtlException(DescribeJsonError(e));
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
    } catch (const json::exception& e) {
        throw HostCtl::Lib::HostCtlException(DescribeJsonError(e));
    }
}

// Every simulated-host operation ends in this when anything at all fails
// inside it: the JSON library's errors (wrong type, null for an object, out
// of range), bad_alloc and the like all leave as HostCtlException, worded
// "host state: /network/pnics/0/name: expected a string, found a number".
[[noreturn]] void RethrowAsHostFailure();

// The member `key` of `object` by reference, or an empty object when absent.
inline const json& Member(const json& object, const char* key)
{
    static const json empty = json::object();
    auto it = object.find(key);
    return it == object.end() ? empty : *it;
}

// The list under `key` of `object` by reference: empty when absent or null,
// a failure naming the field when it is not a list.
inline const json& Items(const json& object, const char* key)
{
    static const json empty = json::array();
    auto it = object.find(key);
    if (it == object.end() || it->is_null())
        return empty;
    if (!it->is_array())
        (void)it->get<json::array_t>();  // throws, naming the field
    return *it;
}

// The list at `pointer`, by reference, with the same rules.
inline const json& ListAt(const json& state, const std::string& pointer)
{
    static const json empty = json::array();
    const json* value = Find(state, pointer);
    if (!value || value->is_null())
        return empty;
    if (!value->is_array())
        throw HostCtl::Lib::HostCtlException("host state: " + pointer + ": expected a list");
    return *value;
}

// The array at `pointer`, created empty when missing.
inline json& ArrayAt(json& state, const std::string& pointer)
{
    json& value = state[json::json_pointer(pointer)];
    if (value.is_null())
        value = json::array();
    if (!value.is_array())
        throw HostCtl::Lib::HostCtlException("host state: " + pointer + ": expected a list");
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
