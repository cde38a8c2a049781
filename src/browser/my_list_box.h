#pragma once

#include <QListWidget>

// The browser's information list: one line an item, and Ctrl+C puts the current line on the
// clipboard as plain text.
class CMyListBox : public QListWidget {
    Q_OBJECT

public:
    explicit CMyListBox(QWidget* parent = nullptr);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};
