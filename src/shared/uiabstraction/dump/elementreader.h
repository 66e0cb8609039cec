#pragma once

#include "shared/uiabstraction/dump/pngreader.h"
#include "shared/uiabstraction/uielement.h"

#include <memory>

namespace Morvex::UIAbstraction {

/// Reads elements from a stream whose bytes may be anything. Each element takes bytes of its own,
/// so that no count makes more of them than the stream has room for.
class ElementReader
{
public:
    explicit ElementReader(QDataStream *stream);

    /// Never null.
    UIElement *readElement();
    /// A count, then as many elements.
    QList<UIElement *> readList();

private:
    std::unique_ptr<UIElement> readLevel(int level);
    std::unique_ptr<UIElement> readFields();
    void readChildren(UIElement *parent, int level);
    void skipElements(qint64 count);
    QStringList readTexts();
    QHash<QString, QString> readProperties();
    QMap<UIEvent, int> readUsage();

    template <typename Value>
    Value read();
    bool isGood() const { return m_stream->status() == QDataStream::Ok; }

    QDataStream *m_stream;
    PngReader m_pictures;
};

} // namespace Morvex::UIAbstraction
