#include "app/find_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QStyle>
#include <QToolButton>

FindBar::FindBar(QWidget* parent)
    : QWidget(parent)
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 2, 6, 2);
    m_field = new QLineEdit(this);
    m_field->setPlaceholderText(tr("Find in page"));
    m_field->setClearButtonEnabled(true);
    m_matches = new QLabel(this);
    m_matches->setMinimumWidth(110);

    auto button = [this, layout](QStyle::StandardPixmap icon, const QString& tip) {
        auto* b = new QToolButton(this);
        b->setIcon(style()->standardIcon(icon));
        b->setToolTip(tip);
        b->setAutoRaise(true);
        layout->addWidget(b);
        return b;
    };
    layout->addWidget(m_field, 1);
    QToolButton* previous = button(QStyle::SP_ArrowUp, tr("Previous match"));
    QToolButton* next = button(QStyle::SP_ArrowDown, tr("Next match"));
    layout->addWidget(m_matches);
    QToolButton* close = button(QStyle::SP_DialogCloseButton, tr("Close"));

    connect(m_field, &QLineEdit::textEdited, this, [this] { request(true, false); });
    connect(m_field, &QLineEdit::returnPressed, this, [this] { request(true, true); });
    connect(previous, &QToolButton::clicked, this, [this] { request(false, true); });
    connect(next, &QToolButton::clicked, this, [this] { request(true, true); });
    connect(close, &QToolButton::clicked, this, [this] {
        hide();
        Q_EMIT closed();
    });
}

void FindBar::open()
{
    show();
    m_field->setFocus();
    m_field->selectAll();
}

void FindBar::setText(const QString& text)
{
    m_field->setText(text);
    request(true, false);
}

void FindBar::showMatches(int count, int index)
{
    if (m_field->text().isEmpty())
        m_matches->clear();
    else if (count == 0)
        m_matches->setText(tr("No matches"));
    else
        m_matches->setText(tr("%1 of %2 matches").arg(index).arg(count));
}

void FindBar::request(bool forward, bool findNext)
{
    if (m_field->text().isEmpty())
    {
        m_matches->clear();
        return;
    }
    Q_EMIT findRequested(m_field->text(), forward, findNext);
}
