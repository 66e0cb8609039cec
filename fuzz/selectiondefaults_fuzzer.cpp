#include "fuzzinput.h"

#include "shared/environment.h"
#include "test/verification/titanselectiondefaults.h"

#include <QDir>

using namespace Morvex;

namespace {

class KnownClass : public Class
{
public:
    QString name() const override { return QStringLiteral("QWidget"); }
    const Module *module() const override { return nullptr; }
    const Class *superClass() const override { return nullptr; }
    const Property *property(const QString &) const override { return nullptr; }
    QStringList propertyNames() const override { return {}; }
    const MethodList *methods(const QString &) const override { return nullptr; }
};

const KnownClass knownClass;

class Defaults : public TitanSelectionDefaultsBase<const Class *, ClassMapping>
{
protected:
    const Class *findClass(const QString &name) const override
    {
        return name == knownClass.name() ? &knownClass : nullptr;
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    static const QTemporaryDir prefix;
    static const QString file = prefix.filePath(QStringLiteral("etc/visualselectiondefaults.xml"));
    const QString input = fuzzInputFile(data, size, "defaults.xml");
    static const bool isLinked =
        QDir(prefix.path()).mkdir(QStringLiteral("etc")) && QFile::link(input, file);
    require(isLinked);
    Environment::setVariable("MORVEX_PREFIX", prefix.path().toStdString());
    Defaults defaults;
    QString error;
    const bool isRead = defaults.parse(&error);
    require(isRead == error.isEmpty());
    require(isRead || error.contains(file));
    defaults.mapping().includePropertyCheck(&knownClass, "text");
    require(!defaults.mapping().includePropertyCheck(nullptr, "text"));
    return 0;
}
