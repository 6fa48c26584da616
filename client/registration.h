// What the component writes into the registry: decided here, written through IRegistryClasses.
//
// Registering is all or nothing: when one key is refused, what was written before is taken away
// again. Unregistering removes every key of the component and nothing else.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace demovex {

// One of the two places where classes are registered: the machine's, or the user's own.
class IRegistryClasses {
  public:
    virtual ~IRegistryClasses() = default;

    // Writes a string value (the key's default value when `name` is empty), making the key and
    // those above it. Raises 70 when the registry refuses.
    virtual void SetString(std::wstring_view key, std::wstring_view name,
                           std::wstring_view value) = 0;

    // Deletes a key with all below it; one that does not exist is no error. Raises 70 when the
    // registry refuses.
    virtual void DeleteTree(std::wstring_view key) = 0;

    // True when `key` exists and has neither a value nor a key below it.
    virtual bool IsEmptyKey(std::wstring_view key) const = 0;
};

struct RegistryValue {
    std::wstring key;   // below the place's root
    std::wstring name;  // empty for the key's default value
    std::wstring value;
};

// Everything that registering writes. `dll` is the component's full path.
std::vector<RegistryValue> RegistrationValues(std::wstring_view dll);

// Writes RegistrationValues(dll); raises 70 with nothing of ours left in that place.
void RegisterClasses(IRegistryClasses& classes, std::wstring_view dll);

// Removes what RegisterClasses wrote; what is not there is no error. Removes as much as can be
// removed before it raises 70.
void UnregisterClasses(IRegistryClasses& classes);

}  // namespace demovex
