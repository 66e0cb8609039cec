#pragma once

#include <QGridLayout>
#include <QLabel>
#include <QWidget>

namespace MorvexBenchmark {

/// A window of 1920x1080 with a thousand labels.
inline QWidget *makeSubjectWindow()
{
    auto *window = new QWidget;
    window->setObjectName(QStringLiteral("subject"));
    auto *grid = new QGridLayout(window);
    for (int i = 0; i < 1000; ++i) {
        auto *label = new QLabel(QStringLiteral("label %1").arg(i));
        label->setObjectName(QStringLiteral("label%1").arg(i));
        grid->addWidget(label, i / 25, i % 25);
    }
    window->setFixedSize(1920, 1080);
    return window;
}

} // namespace MorvexBenchmark
