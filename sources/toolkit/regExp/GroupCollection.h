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
/// copying throw `std::bad_alloc` and change nothing. Nothing else is thrown, and nothing is
/// logged.
class TOOLKIT_API GroupCollection {
public:
    GroupCollection();
    ~GroupCollection();

    std::size_t Count() const;

    /// Shares group `index`; empty when there is none.
    smart_ptr<Group> operator[](unsigned short index) const;

    /// Shares the group of that name; empty when the name is unknown.
    smart_ptr<Group> GetGroup(const TString<char>& name) const;

    /// Appends `group`, whose number is its place in the collection.
    void Add(smart_ptr<Group> group);

    /// Removes all groups and names.
    void Clear();

    /// Gives group `number` the name; a number that has no group is ignored.
    ///
    /// Two groups may have one name. GetGroup() then finds the first of them.
    void AddNamedGroupKey(const TString<char>& name, int number);

    std::vector<smart_ptr<Group>> groups; ///< Place i holds group i.
    std::map<TString<char>, int> names;   ///< Group numbers, in the order of the names' bytes.
};

} // namespace Toolkit
