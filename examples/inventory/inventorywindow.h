#pragma once

#include <QMainWindow>

class QAction;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QTableWidget;
class QTreeWidget;

/// A small stock list: a table of articles, a tree of those that are running low and the others,
/// a form for new ones, a picture of the stock and a menu.
class InventoryWindow : public QMainWindow
{
    Q_OBJECT
    Q_PROPERTY(int totalCount READ totalCount)

public:
    InventoryWindow();

    /// Of all articles.
    int totalCount() const;

private:
    void buildMenu();
    void buildGroups();
    QWidget *buildForm();
    void addArticle(const QString &name, int count);
    void addFromForm();
    void removeSelected();
    void count();
    int countOf(int row) const;
    void showState();
    void showGroups();

    QTableWidget *m_table;
    QTreeWidget *m_groups;
    QLineEdit *m_name;
    QSpinBox *m_count;
    QPushButton *m_add;
    QAction *m_remove;
    QLabel *m_picture;
    QLabel *m_state;
};
