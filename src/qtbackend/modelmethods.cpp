#include "qtbackend/modelmethods.h"

#include "objectmodel/value/valueobject.h"
#include "qtbackend/modeltablerange.h"
#include "qtbackend/pictures.h"
#include "qtbackend/qtmodel.h"

#include <QAbstractItemView>

namespace Morvex {

const char globalClassName[] = "Global";
const char tableClassName[] = "Table";

namespace {

const char rangeClassName[] = "TableRange";
const char pictureClassName[] = "Picture";

// Keeps the picture as long as somebody holds its number.
class PictureObject : public ValueObject
{
public:
    PictureObject(QtModel &model, const QImage &image)
        : ValueObject(QVariant(), QStringLiteral("(a picture)"),
                      model.namedClass(QLatin1String(pictureClassName)))
        , m_model(model)
        , m_id(model.registry().addImage(image))
    {
    }
    ~PictureObject() override { m_model.registry().removeImage(m_id); }

    int id() const override { return m_id; }

private:
    QtModel &m_model;
    int m_id;
};

class RangeObject : public ValueObject
{
public:
    RangeObject(QtModel &model, const ModelTableRange &range)
        : ValueObject(QVariant(), QStringLiteral("(a range of a table)"),
                      model.namedClass(QLatin1String(rangeClassName)))
        , m_range(range)
    {
    }

    const ModelTableRange &range() const { return m_range; }

private:
    ModelTableRange m_range;
};

bool toInts(const ObjectList &arguments, std::vector<int> *numbers)
{
    for (const SharedPtr<Object> &argument : arguments) {
        bool isNumber = false;
        numbers->push_back(argument ? argument->value().toInt(&isNumber) : 0);
        if (!isNumber)
            return false;
    }
    return true;
}

ModelClass::Method grabWidgetMethod(QtModel &model)
{
    return [&model](const SharedPtr<Object> &, const ObjectList &arguments,
                    SharedPtr<Object> *result) {
        if (arguments.size() != 1 || !arguments.front())
            return false;
        const QImage image = grabWidget(model.unwrap(*arguments.front()));
        if (image.isNull())
            return false;
        *result = SharedPtr<Object>(new PictureObject(model, image));
        return true;
    };
}

// Arguments: first row, end row, first column, end column.
ModelClass::Method getRangeMethod(QtModel &model)
{
    return [&model](const SharedPtr<Object> &self, const ObjectList &arguments,
                    SharedPtr<Object> *result) {
        std::vector<int> edges;
        QObject *object = self ? model.unwrap(*self) : nullptr;
        if (!ModelTableRange::isTable(object) || !toInts(arguments, &edges) || edges.size() != 4)
            return false;
        *result = SharedPtr<Object>(
            new RangeObject(model, ModelTableRange(static_cast<QAbstractItemView *>(object),
                                                   edges[0], edges[1], edges[2], edges[3])));
        return true;
    };
}

// Argument: what the XML holds; all without it.
ModelClass::Method contentAsXmlMethod(QtModel &model)
{
    return [&model](const SharedPtr<Object> &self, const ObjectList &arguments,
                    SharedPtr<Object> *result) {
        std::vector<int> flags;
        const auto *range = dynamic_cast<const RangeObject *>(self.data());
        if (!range || !toInts(arguments, &flags) || flags.size() > 1)
            return false;
        const int all = ModelTableRange::TextContent | ModelTableRange::BackgroundColorContent;
        *result = model.wrapValue(range->range().contentAsXml(flags.empty() ? all : flags.front()));
        return true;
    };
}

} // namespace

void addModelMethods(QtModel &model)
{
    model.namedClass(QLatin1String(globalClassName))
        ->addMethod(QStringLiteral("grabWidget"), grabWidgetMethod(model));
    model.namedClass(QLatin1String(tableClassName))
        ->addMethod(QStringLiteral("getRange"), getRangeMethod(model));
    model.namedClass(QLatin1String(rangeClassName))
        ->addMethod(QStringLiteral("contentAsXml"), contentAsXmlMethod(model));
}

} // namespace Morvex
