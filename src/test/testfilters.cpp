#include "test/testfilters.h"

#include <algorithm>
#include <utility>

namespace Morvex {
namespace {

// Null, with the error set, for a negated reserved tag.
std::unique_ptr<FilterInterface> makeAlternative(const QString &alternative, QString *error)
{
    QString name = alternative;
    const bool negated = name.startsWith(QLatin1Char('~'));
    if (negated)
        name.remove(0, 1);
    if (name.startsWith(QLatin1Char('@')))
        name.remove(0, 1);
    if (reservedTags().contains(name)) {
        if (!negated)
            return std::make_unique<NegationFilter>(std::make_unique<TaggedFilter>());
        *error = QStringLiteral("~ operator is not supported for reserved tag: ") + name;
        return nullptr;
    }
    auto tagFilter = std::make_unique<SingleTagFilter>(name.toStdString());
    if (!negated)
        return tagFilter;
    return std::make_unique<NegationFilter>(std::move(tagFilter));
}

std::unique_ptr<FilterInterface> makeTagArgument(const QString &argument, QString *error)
{
    auto anyFilter = std::make_unique<AnyFilter>();
    for (const QString &part : argument.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        auto alternative = makeAlternative(part, error);
        if (!alternative)
            return nullptr;
        anyFilter->append(std::move(alternative));
    }
    return anyFilter;
}

std::unique_ptr<FilterInterface> makeScenarioFilter(const std::vector<unsigned int> &indices)
{
    if (indices.empty())
        return std::make_unique<AllFilter>();
    auto anyFilter = std::make_unique<AnyFilter>();
    for (const unsigned int index : indices)
        anyFilter->append(std::make_unique<ScenarioIndexFilter>(index));
    return anyFilter;
}

} // namespace

FilterInterface::~FilterInterface() = default;

void AllFilter::append(std::unique_ptr<FilterInterface> filter)
{
    m_filters.push_back(std::move(filter));
}

bool AllFilter::shouldExecuteWithTags(const std::vector<std::string> &tags)
{
    return std::all_of(m_filters.begin(), m_filters.end(),
                       [&tags](auto &filter) { return filter->shouldExecuteWithTags(tags); });
}

void AnyFilter::append(std::unique_ptr<FilterInterface> filter)
{
    m_filters.push_back(std::move(filter));
}

bool AnyFilter::shouldExecuteWithTags(const std::vector<std::string> &tags)
{
    return std::any_of(m_filters.begin(), m_filters.end(),
                       [&tags](auto &filter) { return filter->shouldExecuteWithTags(tags); });
}

SingleTagFilter::SingleTagFilter(const std::string &tag)
    : m_tag(tag)
{
}

bool SingleTagFilter::shouldExecuteWithTags(const std::vector<std::string> &tags)
{
    return std::find(tags.begin(), tags.end(), m_tag) != tags.end();
}

bool TaggedFilter::shouldExecuteWithTags(const std::vector<std::string> &tags)
{
    return !tags.empty();
}

NegationFilter::NegationFilter(std::unique_ptr<FilterInterface> filter)
    : m_filter(std::move(filter))
{
}

bool NegationFilter::shouldExecuteWithTags(const std::vector<std::string> &tags)
{
    return !m_filter->shouldExecuteWithTags(tags);
}

ScenarioIndexFilter::ScenarioIndexFilter(unsigned int index)
    : m_index(index)
{
}

bool ScenarioIndexFilter::shouldExecuteWithTags(const std::vector<std::string> &)
{
    return m_counter++ == m_index;
}

const QStringList &reservedTags()
{
    static const QStringList tags{QStringLiteral("untagged")};
    return tags;
}

FilterInterface *allFilterByArgs(const QStringList &tagArguments,
                                 const std::vector<unsigned int> &scenarioIndices, QString *error)
{
    auto tagFilter = std::make_unique<AllFilter>();
    for (const QString &argument : tagArguments) {
        auto filter = makeTagArgument(argument, error);
        if (!filter)
            return nullptr;
        tagFilter->append(std::move(filter));
    }
    auto all = std::make_unique<AllFilter>();
    all->append(std::move(tagFilter));
    all->append(makeScenarioFilter(scenarioIndices));
    return all.release();
}

} // namespace Morvex
