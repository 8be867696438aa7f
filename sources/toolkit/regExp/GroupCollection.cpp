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
    return index < groups.size() ? groups[index] : smart_ptr<Group>();
}

smart_ptr<Group> GroupCollection::GetGroup(const TString<char>& name) const
{
    const auto found = names.find(name);
    if (found == names.end())
        return smart_ptr<Group>();
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
    names.emplace(name, number);
    const smart_ptr<Group> group = (*this)[static_cast<unsigned short>(number)];
    if (group.IsValid())
        group->name = name;
}

} // namespace Toolkit
