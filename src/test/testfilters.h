#pragma once

#include "morvex_export.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <string>
#include <vector>

namespace Morvex {

/// Decides from the tags of a test case, or of a scenario, whether it runs. Tags are UTF-8 and
/// compared byte by byte.
class MORVEX_EXPORT FilterInterface
{
public:
    virtual ~FilterInterface();
    virtual bool shouldExecuteWithTags(const std::vector<std::string> &tags) = 0;
};

using FilterList = std::vector<std::unique_ptr<FilterInterface>>;

/// All children agree, or there are none. Asks none after the first that does not.
class MORVEX_EXPORT AllFilter : public FilterInterface
{
public:
    void append(std::unique_ptr<FilterInterface> filter);
    bool shouldExecuteWithTags(const std::vector<std::string> &tags) override;

private:
    FilterList m_filters;
};

/// At least one child agrees. Asks none after the first that does.
class MORVEX_EXPORT AnyFilter : public FilterInterface
{
public:
    void append(std::unique_ptr<FilterInterface> filter);
    bool shouldExecuteWithTags(const std::vector<std::string> &tags) override;

private:
    FilterList m_filters;
};

class MORVEX_EXPORT SingleTagFilter : public FilterInterface
{
public:
    explicit SingleTagFilter(const std::string &tag);
    bool shouldExecuteWithTags(const std::vector<std::string> &tags) override;

private:
    std::string m_tag;
};

/// There is a tag, whatever it is.
class MORVEX_EXPORT TaggedFilter : public FilterInterface
{
public:
    bool shouldExecuteWithTags(const std::vector<std::string> &tags) override;
};

class MORVEX_EXPORT NegationFilter : public FilterInterface
{
public:
    explicit NegationFilter(std::unique_ptr<FilterInterface> filter);
    bool shouldExecuteWithTags(const std::vector<std::string> &tags) override;

private:
    std::unique_ptr<FilterInterface> m_filter;
};

/// Agrees to the call of its index, counted from 0. Serves one pass over the scenarios, and counts
/// only those calls that reach it.
class MORVEX_EXPORT ScenarioIndexFilter : public FilterInterface
{
public:
    explicit ScenarioIndexFilter(unsigned int index);
    bool shouldExecuteWithTags(const std::vector<std::string> &tags) override;

private:
    unsigned int m_index;
    unsigned int m_counter = 0;
};

/// Tags with a meaning of their own, which no test case should have.
MORVEX_EXPORT const QStringList &reservedTags();

/// A filter that demands each of @p tagArguments, a list of alternatives with "," between them
/// ("smoke,~slow"), and one of @p scenarioIndices when there are any. The caller owns the result;
/// it is null when an argument is bad, and @p error says why.
MORVEX_EXPORT FilterInterface *allFilterByArgs(const QStringList &tagArguments,
                                               const std::vector<unsigned int> &scenarioIndices,
                                               QString *error);

} // namespace Morvex
