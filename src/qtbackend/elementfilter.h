#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

namespace Morvex {

/// What of a class of elements goes into a dump.
struct ElementRules
{
    enum Role { None = 0, Content = 1, Identifying = 2, Both = Content | Identifying };

    /// By the name of the property; those that are not here have no role.
    QHash<QString, Role> roles;
    bool isTransparent = false;
    bool hidesSubtree = false;
};

/// The rules of all filters of a dump, as docs/element-filters.md says: the last one that fits
/// wins.
class ElementFilter
{
public:
    /// Adds the rules of one filter. Returns an error text with line and column, empty on success.
    [[nodiscard]] QString add(const QByteArray &xml);

    /// The rules for an element of a class. @p classNames are its own and those that it derives
    /// from, @p propertyNames the properties that it has.
    ElementRules rulesFor(const QStringList &classNames, const QStringList &propertyNames) const;

    bool wantsPicture() const { return m_wantsPicture; }

private:
    friend class ElementFilterReader;

    struct PropertyRule
    {
        QString name;
        ElementRules::Role role;
    };
    enum Choice { Unchanged, No, Yes };
    struct ClassRule
    {
        QString className;
        Choice isTransparent = Unchanged;
        Choice hidesSubtree = Unchanged;
        QList<PropertyRule> properties;
    };

    static void apply(const ClassRule &rule, const QStringList &propertyNames, ElementRules *rules);

    QList<ClassRule> m_rules;
    bool m_wantsPicture = true;
};

} // namespace Morvex
