// A folder typed as a path or chosen with the desktop's folder dialog; empty stands for the
// kind's own default, shown greyed in the field.
#pragma once

#include <QWidget>

class QLineEdit;

namespace tw {

class FolderField final : public QWidget {
    Q_OBJECT
public:
    explicit FolderField(const QString& placeholder, QWidget* parent = nullptr);

    QLineEdit* field() const { return m_field; }
    // Shows the value kept without telling anyone.
    void show(const QString& value);

Q_SIGNALS:
    void chosen(const QString& folder);

private:
    QLineEdit* m_field = nullptr;
};

} // namespace tw
