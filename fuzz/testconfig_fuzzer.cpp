#include "fuzzinput.h"

#include "test/testconfig.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    QString summary;
    QString description;
    QStringList tags;
    QMap<QString, QString> settings;
    QMap<QString, QString> passwords;
    const QString error =
        Morvex::tryReadTestConfig(fuzzInputFile(data, size, "config.xml"), &summary, &description,
                                  &tags, &settings, &passwords);
    require(error.isEmpty() || (summary.isEmpty() && tags.isEmpty() && settings.isEmpty()));
    return 0;
}
