#include "toolkit/base/LineSplitter.h"
#include "toolkit/config/IniSections.Private.h"

#include <cstddef>
#include <utility>

namespace Toolkit {
namespace {

// Returns a part of a line without the spaces and tabs around it.
std::string_view Trim(std::string_view text)
{
    constexpr const char* spacesAndTabs = " \t";
    const std::size_t begin = text.find_first_not_of(spacesAndTabs);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(spacesAndTabs) + 1 - begin);
}

} // namespace

IniSections::IniSections(std::string text) : m_text(std::move(text))
{
    IniSection* section = nullptr;
    for (Base::LineSplitter lines(m_text); lines.MoveToNextLine();)
        section = ParseLine(lines.Line(), section);
    for (IniSection& each : m_sections)
        each.Complete();
}

// Returns the section that the lines after this one belong to; null above the first header.
IniSection* IniSections::ParseLine(std::string_view line, IniSection* section)
{
    if (line.empty() || line.front() == ';')
        return section;
    if (line.size() > 1 && line.front() == '[' && line.back() == ']')
        return &GetOrAddSection(line.substr(1, line.size() - 2));

    const std::size_t equals = line.find('=');
    if (section && equals != std::string_view::npos)
        section->Add(Trim(line.substr(0, equals)), Trim(line.substr(equals + 1)));
    return section;
}

// A repeated header continues its section.
IniSection& IniSections::GetOrAddSection(std::string_view name)
{
    const std::size_t position = m_index.Find(m_sections, name);
    if (position != NameIndex::c_missing)
        return m_sections[position];
    m_index.Reserve(m_sections, m_sections.size() + 1);
    m_sections.emplace_back(name);
    m_index.Add(m_sections, m_sections.size() - 1);
    return m_sections.back();
}

const IniSection* IniSections::Find(std::wstring_view name) const
{
    const std::size_t position = m_index.Find(m_sections, name);
    return position == NameIndex::c_missing ? nullptr : &m_sections[position];
}

} // namespace Toolkit
