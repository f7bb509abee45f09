// Calls all members of an object by its type information.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "host/selfcheck/Value.h"

namespace kv::host {

/// What a caller must know of some members. The others get arguments by their types: 0, False, "TX1".
struct MemberHints {
    /// The arguments of a method, or the value of a property that is set to another value than it had.
    std::map<std::wstring, std::function<std::vector<Value>()>> arguments;
    std::set<std::wstring> skipped;      ///< called by another step
    std::set<std::wstring> refusing;     ///< setting these is an error
    std::function<IDispatch*()> object;  ///< an argument that is an object
};

struct MemberResults {
    std::size_t members = 0;    ///< names in the interface
    std::size_t functions = 0;  ///< a property that can be read and set has two
    std::size_t calls = 0;
    std::vector<std::wstring> problems;
};

/// Reads each property, sets it to what was read and reads it again, and calls each method. Members are in the order of
/// the interface.
[[nodiscard]] MemberResults callMembers(IDispatch* object, const MemberHints& hints);

}  // namespace kv::host
