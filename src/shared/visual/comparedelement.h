#pragma once

#include "shared/titancmp.h"

#include <QHash>
#include <QRegExp>

#include <vector>

namespace Morvex {

/// The checks of a comparison, by element. Nothing is owned.
struct VisualChecks
{
    const TitanPropertyChecksOfElements &identifying;
    const TitanPropertyChecksOfElements &content;
    const TitanPropertyChecksOfElements &geometry;
    const QMap<BrowserElement::Id, VisualScreenshotCheck> &screenshots;
    const QList<BrowserElement::Id> &subtreeExcluded;
};

/// The geometry that is compared: relative to the parent, but that of a top element, and one whose
/// parent is nowhere, keeps its place.
UIAbstraction::ElementGeometry _geometryRelativeToParent(const BrowserElement *element);

/// An element with what is asked of it in each of its comparisons.
struct ComparedElement
{
    BrowserElement *element = nullptr;
    QString className;
    QString simplifiedType;
    QMap<QString, QString> properties;
    QMap<QString, QString> identifyingProperties;
    UIAbstraction::ElementGeometry geometry;
    /// In the list of all elements.
    int firstChild = 0;
    int childCount = 0;

    // Of an expected element. Null for no check.

    const QMap<QString, TitanPropertyCheck> *identifyingChecks = nullptr;
    const QMap<QString, TitanPropertyCheck> *contentChecks = nullptr;
    const QMap<QString, TitanPropertyCheck> *geometryChecks = nullptr;
    const VisualScreenshotCheck *screenshotCheck = nullptr;
    bool isSubtreeExcluded = false;
};

/// All elements of a tree, the root first and the children of each one after the other. @p checks
/// is null for the actual tree.
std::vector<ComparedElement> comparedElements(BrowserElement *root, const VisualChecks *checks);

/// Whether an actual element may stand for an expected one.
bool haveSameType(const ComparedElement &expected, const ComparedElement &actual);

/// Compares the values of elements. Keeps what patterns are compiled to.
class ElementMatcher
{
public:
    /// @p failures gets the names of the properties that fail, of which all are tested.
    bool _matchProperties(const QMap<QString, QString> &expected,
                          const QMap<QString, QString> &actual,
                          const QMap<QString, TitanPropertyCheck> &checks, QStringList *failures);

    /// How many properties fail.
    int countFailures(const QMap<QString, QString> &expected, const QMap<QString, QString> &actual,
                      const QMap<QString, TitanPropertyCheck> &checks);

private:
    template <typename Found>
    void findFailures(const QMap<QString, QString> &expected, const QMap<QString, QString> &actual,
                      const QMap<QString, TitanPropertyCheck> &checks, const Found &found);
    bool matches(const TitanPropertyCheck &check, const QString &expected, const QString &actual);
    bool matchesPattern(const TitanPropertyCheck &check, const QString &actual);

    QHash<const TitanPropertyCheck *, QRegExp> m_patterns;
};

/// Whether both elements have a geometry that can be compared.
bool haveGeometry(const ComparedElement &expected, const ComparedElement &actual);

/// The names of the geometry checks of @p expected that fail.
QStringList geometryFailures(const ComparedElement &expected, const ComparedElement &actual);

} // namespace Morvex
