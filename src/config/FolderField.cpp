#include "config/FolderField.h"

#include "text/L.h"

#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

namespace tw {

FolderField::FolderField(const QString& placeholder, QWidget* parent)
    : QWidget(parent)
    , m_field(new QLineEdit(this)) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_field->setPlaceholderText(placeholder);
    m_field->setMinimumWidth(220);
    auto* choose = new QPushButton(L("folderField.choose", QStringLiteral("Choose…")), this);
    layout->addWidget(m_field, 1);
    layout->addWidget(choose);
    connect(m_field, &QLineEdit::editingFinished, this,
            [this] { Q_EMIT chosen(m_field->text().trimmed()); });
    connect(choose, &QPushButton::clicked, this, [this] {
        const QString start =
            m_field->text().trimmed().isEmpty() ? QDir::homePath() : m_field->text().trimmed();
        const QString folder = QFileDialog::getExistingDirectory(
            this, L("folderField.title", QStringLiteral("Choose a Folder")), start);
        if (!folder.isEmpty()) {
            m_field->setText(folder);
            Q_EMIT chosen(folder);
        }
    });
}

void FolderField::show(const QString& value) {
    if (!m_field->hasFocus()) {
        m_field->setText(value);
    }
}

} // namespace tw
