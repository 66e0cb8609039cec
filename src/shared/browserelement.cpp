#include "shared/browserelement.h"

#include <QHash>

#include <algorithm>

namespace Morvex {

using UIAbstraction::saturated;

namespace {

uint hashOf(const QString &id)
{
    // Differs from process to process, so that no file can make all ids collide.
    static const auto seed = uint(qGlobalQHashSeed());
    return id.isEmpty() ? 0 : qHash(id, seed);
}

} // namespace

BrowserElement::Id::Id(const QString &id)
    : m_id(id)
    , m_hash(hashOf(id))
{
}

BrowserElement::BrowserElement(BrowserElement *parent, const QString &name)
    : m_name(name)
{
    if (parent)
        parent->attach(this);
}

BrowserElement::~BrowserElement()
{
    detach();
    clear();
}

void BrowserElement::clear()
{
    // One after another: a deep tree would overrun the stack.
    QList<BrowserElement *> pending;
    pending.swap(m_children);
    while (!pending.isEmpty()) {
        BrowserElement *element = pending.takeLast();
        pending += element->m_children;
        element->m_children.clear();
        element->m_parent = nullptr;
        delete element;
    }
    clearCache();
}

void BrowserElement::attach(BrowserElement *child)
{
    if (!child || child == this || isDescendantOf(child))
        return;
    child->detach();
    m_children += child;
    child->m_parent = this;
    clearCache();
}

void BrowserElement::detach()
{
    if (!m_parent)
        return;
    m_parent->m_children.removeOne(this);
    m_parent->clearCache();
    m_parent = nullptr;
}

bool BrowserElement::isDescendantOf(const BrowserElement *other) const
{
    const BrowserElement *ancestor = m_parent;
    while (ancestor && ancestor != other)
        ancestor = ancestor->m_parent;
    return ancestor != nullptr;
}

QString BrowserElement::displayName() const
{
    if (!m_text.isEmpty())
        return m_text;
    if (!m_type.isEmpty())
        return QStringLiteral("[%1]").arg(m_type);
    return m_className.isEmpty() ? QStringLiteral("<%1>").arg(m_name) : m_className;
}

QRect BrowserElement::absoluteGeometry() const
{
    if (!m_geometry.isRelative() || !m_geometry.rect().isValid())
        return relativeGeometry();
    return m_parent ? m_geometry.translatedRect(m_parent->absoluteGeometry().topLeft()) : QRect();
}

QRect BrowserElement::relativeGeometry() const
{
    return m_geometry.rect().isValid() ? m_geometry.rect() : QRect();
}

int BrowserElement::similarityTo(const BrowserElement *other) const
{
    if (!other || m_name != other->m_name || m_className != other->m_className ||
        m_type != other->m_type)
        return 0;
    return m_text == other->m_text ? 20 : 10;
}

BrowserElement *BrowserElement::mostSimilarChild(const BrowserElement *other) const
{
    BrowserElement *best = nullptr;
    int bestSimilarity = 0;
    for (BrowserElement *child : m_children) {
        const int similarity = child->similarityTo(other);
        if (similarity > bestSimilarity) {
            best = child;
            bestSimilarity = similarity;
        }
    }
    return best;
}

void BrowserElement::addCoverage(const BrowserElement &other)
{
    for (auto entry = other.m_coverage.begin(); entry != other.m_coverage.end(); ++entry)
        setCoverage(entry.key(), saturated(qint64(m_coverage.value(entry.key())) + entry.value()));
}

void BrowserElement::merge(BrowserElement *other)
{
    if (!other)
        return;
    BrowserElement *child = mostSimilarChild(other);
    if (!child) {
        attach(other);
        return;
    }
    child->addCoverage(*other);
    // Each child leaves the list.
    const QList<BrowserElement *> grandchildren = other->m_children;
    for (BrowserElement *grandchild : grandchildren)
        child->merge(grandchild);
    child->clearCache();
    delete other;
}

bool BrowserElement::mergeXmlFiles(const QStringList &fileNames, QString &error)
{
    for (const QString &fileName : fileNames) {
        BrowserElement scratch(nullptr, m_name);
        if (!readXMLFile(&scratch, fileName, &error))
            return false;
        const QList<BrowserElement *> elements = scratch.m_children;
        for (BrowserElement *element : elements)
            merge(element);
    }
    return true;
}

void BrowserElement::setCoverage(const QString &name, int value)
{
    m_coverage.insert(name, value);
    clearCache();
}

int BrowserElement::coverageExpected(bool recursive) const
{
    if (!recursive)
        return m_coverage.size();
    if (m_expectedCache < 0) {
        qint64 sum = m_coverage.size();
        for (const BrowserElement *child : m_children)
            sum += child->coverageExpected(true);
        m_expectedCache = saturated(sum);
    }
    return m_expectedCache;
}

int BrowserElement::coverageActual(bool recursive) const
{
    const auto own = static_cast<int>(
        std::count_if(m_coverage.begin(), m_coverage.end(), [](int count) { return count > 0; }));
    if (!recursive)
        return own;
    if (m_actualCache < 0) {
        qint64 sum = own;
        for (const BrowserElement *child : m_children)
            sum += child->coverageActual(true);
        m_actualCache = saturated(sum);
    }
    return m_actualCache;
}

double BrowserElement::coveragePercentage(bool recursive) const
{
    const int expected = coverageExpected(recursive);
    return expected == 0 ? 100.0 : 100.0 * coverageActual(recursive) / expected;
}

void BrowserElement::clearCache()
{
    for (BrowserElement *element = this; element; element = element->m_parent) {
        element->m_expectedCache = -1;
        element->m_actualCache = -1;
    }
}

bool BrowserElement::styleValid() const
{
    return std::all_of(m_styleCheckResults.begin(), m_styleCheckResults.end(),
                       [](const StyleCheckResult &result) { return result.hasPassed(); });
}

} // namespace Morvex
