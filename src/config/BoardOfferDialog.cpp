#include "config/BoardOfferDialog.h"

#include "backup/LayoutShare.h"
#include "text/L.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QVBoxLayout>

namespace tw {

namespace {

constexpr int previewWidth = 520;

} // namespace

BoardOfferDialog::BoardOfferDialog(const Board& board, const BoardPicture::PaintTile& paintTile,
                                   const QImage& backdrop, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(LayoutShare::offerTitle(board));
    auto* layout = new QVBoxLayout(this);
    auto* preview = new QLabel(this);
    const QImage picture = BoardPicture::render(board, paintTile, backdrop, 2.0);
    QPixmap pixmap =
        QPixmap::fromImage(picture).scaledToWidth(previewWidth * 2, Qt::SmoothTransformation);
    pixmap.setDevicePixelRatio(2.0);
    preview->setPixmap(pixmap);
    preview->setAlignment(Qt::AlignCenter);
    layout->addWidget(preview);
    auto* title = new QLabel(LayoutShare::offerTitle(board), this);
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    layout->addWidget(title);
    auto* body = new QLabel(LayoutShare::offerBody(board), this);
    body->setWordWrap(true);
    layout->addWidget(body);

    auto* buttons = new QHBoxLayout();
    auto* cancel = new QPushButton(L("common.cancel", QStringLiteral("Cancel")), this);
    m_replace = new QPushButton(L("share.offer.replace", QStringLiteral("Replace Desktop")), this);
    m_add = new QPushButton(L("share.offer.add", QStringLiteral("Add to Desktop")), this);
    m_add->setDefault(true);
    buttons->addStretch();
    buttons->addWidget(cancel);
    buttons->addWidget(m_replace);
    buttons->addWidget(m_add);
    layout->addLayout(buttons);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_replace, &QPushButton::clicked, this, [this] {
        m_choice = Choice::replace;
        accept();
    });
    connect(m_add, &QPushButton::clicked, this, [this] {
        m_choice = Choice::add;
        accept();
    });
}

} // namespace tw
