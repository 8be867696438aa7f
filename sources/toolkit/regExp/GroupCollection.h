#pragma once

#include "toolkit/core/Export.h"
#include "toolkit/core/TString.h"
#include "toolkit/core/smart_ptr.h"
#include "toolkit/regExp/Group.h"

#include <cstddef>
#include <map>
#include <vector>

namespace Toolkit {

/// The groups of a match, by number and by name.
///
/// One object is used by one thread at a time. When out of memory, Add(), AddNamedGroupKey() and
/// copying throw `std::bad_alloc` and change nothing, except that an assignment may have replaced
/// part of its target. Nothing else is thrown, and nothing is logged.
class TOOLKIT_API GroupCollection {
public:
    GroupCollection();
    ~GroupCollection();

    std::size_t Count() const;

    /// Returns a shared pointer to group `index`; empty if there is none.
    smart_ptr<Group> operator[](unsigned short index) const;

    /// Returns a shared pointer to the group called `name`; empty if the name is unknown.
    smart_ptr<Group> GetGroup(const TString<char>& name) const;

    /// Appends `group`. Its place in the collection is its number.
    void Add(smart_ptr<Group> group);

    /// Removes all groups and names.
    void Clear();

    /// Names group `number`; ignores a number that has no group.
    ///
    /// Two groups may have the same name. GetGroup() then finds the one that was named first.
    void AddNamedGroupKey(const TString<char>& name, int number);

    std::vector<smart_ptr<Group>> groups; ///< Element i is group i.
    std::map<TString<char>, int> names;   ///< Group numbers by name, ordered by the bytes.
};

} // namespace Toolkit
