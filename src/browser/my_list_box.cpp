#include "browser/my_list_box.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>

CMyListBox::CMyListBox(QWidget* parent) : QListWidget(parent) {
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setUniformItemSizes(true);
}

void CMyListBox::keyPressEvent(QKeyEvent* event) {
    if ((event->modifiers() & Qt::ControlModifier) && event->key() == Qt::Key_C) {
        if (const QListWidgetItem* line = currentItem(); line && !line->text().isEmpty())
            QGuiApplication::clipboard()->setText(line->text());
        event->accept();
        return;
    }
    QListWidget::keyPressEvent(event);
}
