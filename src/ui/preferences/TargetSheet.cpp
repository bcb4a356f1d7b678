// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/preferences/TargetSheet.h"

#include "alerts/BrevokAlert.h"
#include "foundation/Texts.h"
#include "foundation/UntrustedText.h"
#include "targets/TargetJudgement.h"
#include "ui/preferences/ChosenFolder.h"
#include "ui/preferences/TargetOrder.h"
#include "ui/widgets/TextFitting.h"
#include "ui_TargetSheet.h"

#include <QFileDialog>
#include <QGridLayout>
#include <QPointer>
#include <QStyleOptionComboBox>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// What a default button is worth by itself; as the first of an alert it counts alertFirstButton.
constexpr int defaultButton = 1;

constexpr int pathItem = 0; // of the pop-up; the item behind it opens the chooser

} // namespace

TargetSheet::TargetSheet(
    BrevokTargetApps &targets, AlertPresenter &presenter, QStringList folders, QWidget *parent)
    : QDialog(parent)
    , m_targets(targets)
    , m_presenter(presenter)
    , m_folders(std::move(folders))
    , m_outlets(std::make_unique<Ui::TargetSheet>())
{
    setObjectName(u"targetDataSheet"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    Ui::TargetSheet &ui = *m_outlets;
    ui.setupUi(this);
    setTexts();
    QSizePolicy keepsRoom = ui.sheetStatus->sizePolicy();
    keepsRoom.setRetainSizeWhenHidden(true);
    ui.sheetStatus->setSizePolicy(keepsRoom);
    ui.targetPath->addItems({QString(), Texts::tr("Other…")});
    ui.targetApp->addItems({u"InDesign"_s, u"InCopy"_s});
    showVersion(targetVersion(targetVersionCount - 1));
    connect(ui.targetPath, &QComboBox::activated, this, [this](int index) {
        if (index != pathItem) {
            chosePath();
        }
    });
    connect(ui.targetApp, &QComboBox::activated, this, [this] { m_appByHand = true; });
    connect(ui.targetVer, &QComboBox::activated, this, [this] { m_versionByHand = true; });
    connect(ui.choosePath, &QPushButton::clicked, this, &TargetSheet::clickOnPath);
    connect(ui.addTarget, &QPushButton::clicked, this, &TargetSheet::insertPath);
    connect(ui.cancelTarget, &QPushButton::clicked, this, &TargetSheet::cancelPath);
}

TargetSheet::~TargetSheet() = default;

void TargetSheet::setTexts()
{
    Ui::TargetSheet &ui = *m_outlets;
    setWindowTitle(Texts::tr("Add Target"));
    ui.sheetHint->setText(
        Texts::tr("Chose Plug-Ins directory inside Adobe InCopy/InDesign application folder."));
    ui.targetPathLabel->setText(Texts::tr("&Folder:"));
    ui.choosePath->setText(Texts::tr("&Browse…"));
    ui.targetAppLabel->setText(Texts::tr("&Application:"));
    ui.targetVerLabel->setText(Texts::tr("&Version:"));
    ui.addTarget->setText(Texts::tr("Add Target"));
    ui.cancelTarget->setText(Texts::tr("Cancel"));
}

void TargetSheet::begin(const QString &path)
{
    setTargetPath(path);
    open();
    m_outlets->choosePath->setFocus();
}

void TargetSheet::setTargetPath(const QString &path)
{
    m_path = path;
    m_appByHand = false;
    m_versionByHand = false;
    m_outlets->targetPath->setCurrentIndex(pathItem);
    setPlainToolTip(*m_outlets->targetPath, path);
    showPath();
    setChecking(!path.isEmpty());
    if (!path.isEmpty()) {
        readChosenFolder(m_targets, path, this, [this](const ChosenFolder &chosen) { folderRead(chosen); });
    }
}

// A pop-up cuts a title that is too long without a sign.
void TargetSheet::showPath()
{
    QComboBox &popUp = *m_outlets->targetPath;
    QStyleOptionComboBox option;
    option.initFrom(&popUp);
    constexpr int margins = 4;
    const int room = popUp.style()
                         ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &popUp)
                         .width()
        - margins;
    const QString title = m_path.isEmpty() ? Texts::tr("None") : oneLine(m_path, m_path.size());
    popUp.setItemText(pathItem, popUp.fontMetrics().elidedText(title, Qt::ElideMiddle, room));
}

void TargetSheet::resizeEvent(QResizeEvent *event)
{
    QDialog::resizeEvent(event);
    m_outlets->sheetGrid->activate(); // the pop-up has its new size
    showPath();
}

void TargetSheet::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
        showPath();
    }
}

// What was chosen by hand meanwhile stays.
void TargetSheet::folderRead(const ChosenFolder &chosen)
{
    setChecking(false);
    if (!chosen.look) {
        tell(doesNotAnswer(m_path));
        return;
    }
    if (chosen.host && !m_appByHand) {
        m_outlets->targetApp->setCurrentIndex(chosen.host->isInCopy ? 1 : 0);
    }
    if (!chosen.host || !targetVersionIndex(chosen.host->version)) {
        tell(Texts::tr("No known version of InDesign or InCopy stands beside this folder. Choose the "
                       "application and its version."));
    } else if (!m_versionByHand) {
        showVersion(chosen.host->version);
    }
}

// Offers newer versions than usual only where the application is newer.
void TargetSheet::showVersion(const QString &version)
{
    QComboBox &popUp = *m_outlets->targetVer;
    const int index = targetVersionIndex(version).value_or(0);
    for (int next = popUp.count(); next < targetVersionCount || next <= index; ++next) {
        popUp.addItem(targetVersionName(next));
    }
    popUp.setCurrentIndex(index);
}

void TargetSheet::chosePath()
{
    m_outlets->targetPath->setCurrentIndex(m_outlets->targetPath->count() - 1);
    clickOnPath();
}

void TargetSheet::clickOnPath()
{
    if (std::exchange(m_choosing, true)) {
        return;
    }
    // A folder that does not answer would hold up the chooser.
    findFolder(QStringList(m_path) + m_folders, this, [this](const QString &folder) { openChooser(folder); });
}

void TargetSheet::openChooser(const QString &folder)
{
    m_choosing = false;
    if (!isVisible()) {
        return;
    }
    auto *chooser = new QFileDialog(this, Texts::tr("Chose Plug-Ins directory"), folder);
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    chooser->setFileMode(QFileDialog::Directory);
    chooser->setOption(QFileDialog::ShowDirsOnly);
    // The desktop's own chooser has no room for the message, which the sheet shows as well.
    if (auto *grid = qobject_cast<QGridLayout *>(chooser->layout())) {
        auto *message = new QLabel(
            Texts::tr("Chose Plug-Ins directory inside Adobe InCopy/InDesign application folder."), chooser);
        message->setTextFormat(Qt::PlainText);
        message->setWordWrap(true);
        grid->addWidget(message, grid->rowCount(), 0, 1, grid->columnCount());
    }
    connect(chooser, &QDialog::accepted, this, [this, chooser] { folderChosen(*chooser); });
    connect(chooser, &QDialog::rejected, this, [this] { m_outlets->targetPath->setCurrentIndex(pathItem); });
    chooser->open();
}

void TargetSheet::folderChosen(const QFileDialog &chooser)
{
    m_outlets->targetPath->setCurrentIndex(pathItem);
    const QStringList chosen = chooser.selectedFiles();
    if (chosen.size() == 1) {
        m_folders.prepend(chooser.directory().path());
        Q_EMIT browsed(m_folders.first());
        setTargetPath(chosen.first());
    }
}

void TargetSheet::setChecking(bool checking)
{
    bool loseFocus = false;
    for (QWidget *widget :
        QList<QWidget *>{m_outlets->targetPath, m_outlets->choosePath, m_outlets->addTarget}) {
        loseFocus = loseFocus || (checking && widget->hasFocus());
        widget->setEnabled(!checking && (widget != m_outlets->addTarget || !m_path.isEmpty()));
    }
    // What comes next in the sheet would be Cancel.
    if (loseFocus) {
        m_outlets->targetApp->setFocus();
    }
    tell(checking ? Texts::tr("Checking the folder…") : QString());
}

void TargetSheet::tell(const QString &text)
{
    setBreakableText(*m_outlets->sheetStatus, oneLine(text));
    m_outlets->sheetStatus->setVisible(!text.isEmpty());
    fitTexts();
}

// A window does not grow by itself for texts that wrap.
void TargetSheet::fitTexts()
{
    m_outlets->sheetGrid->activate();
    resize(width(), std::max(height(), m_outlets->sheetGrid->totalHeightForWidth(width())));
}

void TargetSheet::insertPath()
{
    setChecking(true);
    testChosenFolder(m_targets, m_path, this, [this](const ChosenFolder &chosen) {
        setChecking(false);
        m_look = chosen.look;
        if (chosen.passes) {
            tellTarget();
        } else {
            warnOfPath();
        }
    });
}

void TargetSheet::tellTarget()
{
    const QString type = m_outlets->targetApp->currentIndex() > 0 ? u"InCopy"_s : u"InDesign"_s;
    const QString version = targetVersion(m_outlets->targetVer->currentIndex());
    if (const std::optional<QString> reason = whyNoTarget(m_path, version, m_look)) {
        tell(*reason);
        return;
    }
    Q_EMIT targetChosen(m_path, type, version);
    accept();
}

void TargetSheet::warnOfPath()
{
    const std::shared_ptr<BrevokAlert> alert = BrevokAlert::create(m_presenter);
    alert->content.style = AlertStyle::Critical;
    alert->content.messageText = Texts::tr("Invalid Plug-Ins path selected!");
    alert->content.informativeText =
        Texts::tr("The path you specified doesn't look like a valid Adobe InDesign Plug-Ins folder. Do you "
                  "want to use it anyway?");
    alert->content.buttons = {{Texts::tr("OK")}, {Texts::tr("Cancel")}};
    // The alert lives as long as its answer is awaited. Over the sheet: the window below it takes no keys.
    alert->openSheetModalForWindow(this, [self = QPointer(this), alert](int response) {
        if (self && (response == alertFirstButton || response == defaultButton)) {
            self->tellTarget();
        }
    });
}

void TargetSheet::cancelPath()
{
    reject();
}

} // namespace brevok
