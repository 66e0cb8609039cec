#include "shared/visual/expectedelement.h"

#include "shared/visual/elementmatcher.h"

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

    void findSmallest(const Id **smallest) const
    {
        if (m_next != m_end && (!*smallest || m_next.key() < **smallest))
            *smallest = &m_next.key();
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

// The lists of all kinds in one, sorted by id.
std::vector<ElementChecks> mergedChecks(const VisualChecks &checks)
{
    QMap<Id, bool> excluded;
    for (const Id &id : checks.subtreeExcluded)
        excluded.insert(id, true);
    ChecksCursor identifying(checks.identifying);
    ChecksCursor content(checks.content);
    ChecksCursor geometry(checks.geometry);
    ChecksCursor screenshots(checks.screenshots);
    ChecksCursor subtrees(excluded);
    std::vector<ElementChecks> merged;
    for (;;) {
        const Id *smallest = nullptr;
        identifying.findSmallest(&smallest);
        content.findSmallest(&smallest);
        geometry.findSmallest(&smallest);
        screenshots.findSmallest(&smallest);
        subtrees.findSmallest(&smallest);
        if (!smallest)
            return merged;
        const Id id = *smallest;
        ElementChecks next{id,
                           identifying.take(id),
                           content.take(id),
                           geometry.take(id),
                           screenshots.take(id),
                           subtrees.take(id) != nullptr};
        next.isExact = !hasPattern(next.identifying) && !hasPattern(next.content);
        merged.push_back(next);
    }
}

// Finds checks by id, without memory of its own for each of them.
class ChecksIndex
{
public:
    explicit ChecksIndex(const std::vector<ElementChecks> &checks)
        : m_checks(checks)
    {
        size_t size = 2;
        while (size < 2 * checks.size())
            size *= 2;
        m_slots.assign(size, none);
        for (size_t i = 0; i < checks.size(); ++i)
            m_slots[slotOf(checks[i].id)] = int(i);
    }

    // -1 for none.
    int find(const Id &id) const { return m_slots[slotOf(id)]; }

private:
    // The place of the id, or the free one that it would get.
    size_t slotOf(const Id &id) const
    {
        size_t slot = qHash(id.toString(), seed) % m_slots.size();
        while (m_slots[slot] != none && m_checks[size_t(m_slots[slot])].id != id)
            slot = (slot + 1) % m_slots.size();
        return slot;
    }

    static constexpr int none = -1;

    const std::vector<ElementChecks> &m_checks;
    std::vector<int> m_slots;
    // Differs from process to process, so that no file can make all ids collide.
    const uint seed = uint(qGlobalQHashSeed());
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
    : m_checks(mergedChecks(checks))
{
    addElements(root);
}

// The children of each element one after the other.
void ExpectedTree::addElements(BrowserElement *root)
{
    const ChecksIndex checks(m_checks);
    const auto add = [&](BrowserElement *element) {
        m_elements.push_back(
            {element, checks.find(element->id()), _geometryRelativeToParent(element), 0});
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
