#include "toolkit/regExp/GroupCollection.h"

#include <utility>

namespace Toolkit {

GroupCollection::GroupCollection() = default;

GroupCollection::~GroupCollection() = default;

std::size_t GroupCollection::Count() const
{
    return groups.size();
}

smart_ptr<Group> GroupCollection::operator[](unsigned short index) const
{
    return index < groups.size() ? groups[index] : smart_ptr<Group>::Empty();
}

smart_ptr<Group> GroupCollection::GetGroup(const TString<char>& name) const
{
    const auto found = names.find(name);
    if (found == names.end())
        return smart_ptr<Group>::Empty();
    return (*this)[static_cast<unsigned short>(found->second)];
}

void GroupCollection::Add(smart_ptr<Group> group)
{
    groups.push_back(std::move(group));
}

void GroupCollection::Clear()
{
    groups.clear();
    names.clear();
}

void GroupCollection::AddNamedGroupKey(const TString<char>& name, int number)
{
    if (number < 0 || number >= static_cast<int>(Count()))
        return;
    // Everything that may run out of memory comes before the first change.
    TString<char> groupName = name;
    names.emplace(name, number);
    const smart_ptr<Group>& group = groups[static_cast<std::size_t>(number)];
    if (group.IsValid())
        group->name.swap(groupName);
}

} // namespace Toolkit
