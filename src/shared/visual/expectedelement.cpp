#include "shared/visual/expectedelement.h"

#include <QHash>

#include <algorithm>

namespace Morvex {
namespace {

using Id = BrowserElement::Id;

// Walks a sorted map beside others.
template <typename Value>
class ChecksCursor
{
public:
    explicit ChecksCursor(const QMap<Id, Value> &map)
        : m_next(map.constBegin())
        , m_end(map.constEnd())
    {
    }

    // Most often all maps have the same ids, and equal ones are found faster than a smaller one.
    void findSmallest(const Id **smallest) const
    {
        if (m_next == m_end)
            return;
        const Id &id = m_next.key();
        if (!*smallest || (id != **smallest && id < **smallest))
            *smallest = &id;
    }

    // Null when there is no check of that id, which is none below the next one.
    const Value *take(const Id &id)
    {
        if (m_next == m_end || m_next.key() != id)
            return nullptr;
        const Value *value = &m_next.value();
        ++m_next;
        return value;
    }

private:
    typename QMap<Id, Value>::const_iterator m_next;
    typename QMap<Id, Value>::const_iterator m_end;
};

bool hasPattern(const QMap<QString, TitanPropertyCheck> *checks)
{
    return checks && std::any_of(checks->begin(), checks->end(), isPattern);
}

void findExact(ElementChecks *checks)
{
    checks->isExact = !hasPattern(checks->identifying) && !hasPattern(checks->content);
}

// The checks of elements, sorted by their ids. Whether they are exact is not known yet.
struct MergedChecks
{
    std::vector<const Id *> ids;
    std::vector<ElementChecks> checks;
};

// The lists of all kinds in one. Refers to them.
MergedChecks mergedChecks(const VisualChecks &checks, const QMap<Id, bool> &subtreeExcluded)
{
    ChecksCursor identifying(checks.identifying);
    ChecksCursor content(checks.content);
    ChecksCursor geometry(checks.geometry);
    ChecksCursor screenshots(checks.screenshots);
    ChecksCursor subtrees(subtreeExcluded);
    MergedChecks merged;
    const auto atLeast = size_t(std::max(checks.content.count(), checks.geometry.count()));
    merged.ids.reserve(atLeast);
    merged.checks.reserve(atLeast);
    for (;;) {
        const Id *smallest = nullptr;
        identifying.findSmallest(&smallest);
        content.findSmallest(&smallest);
        geometry.findSmallest(&smallest);
        screenshots.findSmallest(&smallest);
        subtrees.findSmallest(&smallest);
        if (!smallest)
            return merged;
        const Id &id = *smallest;
        merged.ids.push_back(&id);
        merged.checks.push_back({identifying.take(id), content.take(id), geometry.take(id),
                                 screenshots.take(id), subtrees.take(id) != nullptr});
    }
}

// Finds checks by id, without memory of its own for each of them.
class ChecksIndex
{
public:
    explicit ChecksIndex(const std::vector<const Id *> &ids)
        : m_ids(ids)
    {
        size_t size = 2;
        while (size < 2 * ids.size())
            size *= 2;
        m_slots.assign(size, none);
        for (size_t i = 0; i < ids.size(); ++i)
            m_slots[slotOf(*ids[i])] = int(i);
    }

    // -1 for none.
    int find(const Id &id) const { return m_slots[slotOf(id)]; }

private:
    // The place of the id, or the free one that it would get.
    size_t slotOf(const Id &id) const
    {
        size_t slot = qHash(id) % m_slots.size();
        while (m_slots[slot] != none && *m_ids[size_t(m_slots[slot])] != id)
            slot = (slot + 1) % m_slots.size();
        return slot;
    }

    static constexpr int none = -1;

    const std::vector<const Id *> &m_ids;
    std::vector<int> m_slots;
};

} // namespace

UIAbstraction::ElementGeometry _geometryRelativeToParent(const BrowserElement *element)
{
    UIAbstraction::ElementGeometry geometry = element->geometry();
    const BrowserElement *parent = element->parent();
    if (parent && parent->parent() && parent->geometry().rect().isValid())
        return geometry.relativeTo(parent->geometry());
    geometry.setRelative(true);
    return geometry;
}

ExpectedTree::ExpectedTree(BrowserElement *root, const VisualChecks &checks)
{
    QMap<Id, bool> subtreeExcluded;
    for (const Id &id : checks.subtreeExcluded)
        subtreeExcluded.insert(id, true);
    MergedChecks merged = mergedChecks(checks, subtreeExcluded);
    m_checks = std::move(merged.checks);
    const ChecksIndex index(merged.ids);
    addElements(root, [&](const Id &id) { return index.find(id); });
}

// The children of each element one after the other.
template <typename FindChecks>
void ExpectedTree::addElements(BrowserElement *root, const FindChecks &findChecks)
{
    const auto add = [&](BrowserElement *element) {
        const int checks = findChecks(element->id());
        // In this order, which is that of the memory, they are read faster than in that of ids.
        if (checks >= 0)
            findExact(&m_checks[size_t(checks)]);
        m_elements.push_back({element, checks, _geometryRelativeToParent(element), 0});
    };
    m_elements.reserve(m_checks.size() + 1);
    add(root);
    for (size_t i = 0; i < m_elements.size(); ++i) {
        m_elements[i].firstChild = int(m_elements.size());
        for (BrowserElement *child : m_elements[i].element->children())
            add(child);
    }
}

} // namespace Morvex
