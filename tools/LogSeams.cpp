#include "LogSeams.h"

#include <algorithm>
#include <string_view>

namespace Tool {
namespace {

// A thread may wait between reading the time and writing its line; longer waits are not expected.
constexpr std::int64_t c_maxDelayMs = 1000;

// Most waits are shorter than this. A smaller jump back is a seam only if a line was cut there.
constexpr std::int64_t c_usualDelayMs = 100;

// Far more than the number of rounds that can leave lines in one file.
constexpr std::size_t c_maxSeams = 64;

// Returns a step from -2^31 to 2^31 - 1, because the tick count wraps around at 2^32.
std::int64_t MeasureStep(std::uint32_t from, std::uint32_t to)
{
    return static_cast<std::int32_t>(to - from);
}

} // namespace

// Returns how much newer a line after `seam` may be than the first line of the part before it.
std::int64_t LogSeams::GetSlack(const Seam& seam)
{
    return std::clamp<std::int64_t>((seam.timeBefore - seam.timeOfPart) / 2, 0, c_maxDelayMs);
}

bool LogSeams::IsPlausible(const Seam& seam)
{
    return seam.isCut || seam.drop >= c_usualDelayMs;
}

void LogSeams::Add(const LogRecord& record)
{
    const bool hasTick = record.header && !record.header->isFromWx;
    const bool isCut = m_cutOffset >= 0;
    if (hasTick)
        AddTick(isCut ? m_cutOffset : record.offset, record.header->tick, isCut);
    // The last line of a record of several lines may be the rest of an overwritten log line.
    const std::size_t lastLine = record.text.rfind('\n');
    if (lastLine != std::string_view::npos)
        m_cutOffset = record.offset + static_cast<off_t>(lastLine) + 1;
    else if (hasTick)
        m_cutOffset = -1;
}

void LogSeams::AddTick(off_t offset, std::uint32_t tick, bool isCut)
{
    if (!m_hasTick)
        m_firstTick = tick;
    const std::int64_t step = m_hasTick ? MeasureStep(m_lastTick, tick) : 0;
    const Seam seam{offset, -step, m_time, 0, m_time + step, isCut};
    m_hasTick = true;
    m_lastTick = tick;
    m_time += step;
    if (seam.drop > m_largestDrop.drop)
        m_largestDrop = seam;
    if (seam.drop < m_largestRise.drop)
        m_largestRise = seam;
    UpdateClearSeams(seam);
}

// Keeps a jump back as a seam if the time jumps back to the first line of the part before it or
// before it, or by at least c_maxDelayMs. Drops earlier seams after which a line is too new.
void LogSeams::UpdateClearSeams(Seam seam)
{
    while (!m_clearSeams.empty() &&
           m_time > m_clearSeams.back().timeOfPart + GetSlack(m_clearSeams.back()))
        m_clearSeams.pop_back();
    seam.timeOfPart = m_clearSeams.empty() ? 0 : m_clearSeams.back().timeAfter;
    const bool isOlderThanPart = IsPlausible(seam) && seam.timeAfter <= seam.timeOfPart;
    if ((isOlderThanPart || seam.drop >= c_maxDelayMs) && m_clearSeams.size() < c_maxSeams)
        m_clearSeams.push_back(seam);
}

// Returns the seams in the order of the file.
std::vector<LogSeams::Seam> LogSeams::ChooseSeams() const
{
    if (!m_hasTick)
        return {};
    const std::int64_t closingStep = MeasureStep(m_lastTick, m_firstTick);
    // Around the ring, the steps add up to 0 unless the jump at the seam is so large that it looks
    // like a step forward.
    if (m_time + closingStep > 0) {
        const bool isRiseLarger = -m_largestRise.drop > closingStep;
        return isRiseLarger ? std::vector<Seam>{m_largestRise} : std::vector<Seam>{};
    }
    if (m_largestDrop.drop <= std::max<std::int64_t>(-closingStep, 0) ||
        !IsPlausible(m_largestDrop))
        return {};
    return m_clearSeams.empty() ? std::vector<Seam>{m_largestDrop} : m_clearSeams;
}

std::vector<LogPart> LogSeams::ListParts(off_t length) const
{
    std::vector<LogPart> parts;
    off_t begin = 0;
    for (const Seam& seam : ChooseSeams()) {
        parts.push_back({begin, seam.offset});
        begin = seam.offset;
    }
    parts.push_back({begin, length});
    std::reverse(parts.begin(), parts.end());
    return parts;
}

std::optional<std::uint32_t> LogSeams::GetNewestTick() const
{
    if (!m_hasTick)
        return {};
    const std::vector<Seam> seams = ChooseSeams();
    if (seams.empty())
        return m_lastTick;
    return m_firstTick + static_cast<std::uint32_t>(seams.front().timeBefore);
}

} // namespace Tool
