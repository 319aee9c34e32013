#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;

// Find in page: a field, previous and next, and the count of matches the page reports.
// Qt main thread.
class FindBar : public QWidget
{
    Q_OBJECT

public:
    explicit FindBar(QWidget* parent = nullptr);

    // Shows the bar with the field focused and its text selected.
    void open();
    void setText(const QString& text);
    // A report of the page: count matches, the active one at index (from 1).
    void showMatches(int count, int index);

Q_SIGNALS:
    // findNext is false for a new text, true to step to the next or previous match.
    void findRequested(const QString& text, bool forward, bool findNext);
    void closed();

private:
    void request(bool forward, bool findNext);

    QLineEdit* m_field = nullptr;
    QLabel* m_matches = nullptr;
};
