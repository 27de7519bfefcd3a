#include "platform/preview/preview_window.hpp"

#include "platform/core/error.hpp"
#include "platform/output/pdf_writer.hpp"
#include "platform/output/workbook.hpp"
#include "platform/preview/gui_application.hpp"
#include "platform/preview/painter_printing.hpp"
#include "platform/preview/preview_page_view.hpp"
#include "platform/preview/preview_thumbnails.hpp"

#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPainter>
#include <QPixmap>
#include <QPrintDialog>
#include <QPrinter>
#include <QRegularExpression>
#include <QScreen>
#include <QSplitter>
#include <QStandardPaths>
#include <QStyle>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <array>

namespace qr::output {

namespace {

constexpr int kDefaultWidth = 1100;
constexpr int kDefaultHeight = 900;
constexpr double kMostOfScreen = 0.9;

struct FitChoice {
    const char* text;
    Zoom zoom;
};

// The zoom box lists these first, then the steps of kZoomSteps.
constexpr std::array<FitChoice, 2> kFitChoices = {
    {{"Fit page", {ZoomMode::FitPage, 100}}, {"Fit width", {ZoomMode::FitWidth, 100}}}};

QString percentText(int percent) {
    return QString::number(percent) + "%";
}

QIcon themeIcon(const char* name, QStyle::StandardPixmap fallback, const QWidget* widget) {
    return QIcon::fromTheme(name, widget->style()->standardIcon(fallback, nullptr, widget));
}

// A magnifying glass with a plus or a minus, for desktops without an icon theme (Qt's own
// style has no zoom icons).
QIcon magnifier(bool plus, const QWidget* widget) {
    constexpr int kSide = 40;
    QPixmap picture(kSide, kSide);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor ink = widget->palette().color(QPalette::WindowText);
    painter.setPen(QPen(ink, 4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(26, 26), QPointF(36, 36));
    painter.setPen(QPen(ink, 3));
    painter.drawEllipse(QRectF(4, 4, 24, 24));
    painter.drawLine(QPointF(10, 16), QPointF(22, 16));
    if (plus)
        painter.drawLine(QPointF(16, 10), QPointF(16, 22));
    return QIcon(picture);
}

// Widgets need Qt's application before the first one is made, the dialog's base included.
QWidget* withApplication(QWidget* parent) {
    ensureGuiApplication();
    return parent;
}

} // namespace

PreviewWindow::PreviewWindow(const page::Pages& pages, const std::string& title, QWidget* parent)
    : QDialog(withApplication(parent)), m_pages(pages), m_title(title) {
    setObjectName("preview");
    setWindowTitle(QString::fromStdString(title));
    setWindowFlags(windowFlags() | Qt::WindowMinMaxButtonsHint | Qt::WindowCloseButtonHint);
    setSizeGripEnabled(true);

    m_view = new PageView(m_pages, m_renderer);
    m_model = new ThumbnailModel(m_pages, m_renderer, this);
    m_thumbnails = new QListView;
    m_thumbnails->setObjectName("thumbnails");
    m_thumbnails->setModel(m_model);
    m_thumbnails->setItemDelegate(new ThumbnailDelegate(m_thumbnails));
    m_thumbnails->setUniformItemSizes(true);
    m_thumbnails->setLayoutMode(QListView::Batched);
    m_thumbnails->setSelectionMode(QAbstractItemView::SingleSelection);
    m_thumbnails->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    m_thumbnails->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_thumbnails->setFixedWidth(ThumbnailDelegate::rowSize().width() +
                                m_thumbnails->style()->pixelMetric(QStyle::PM_ScrollBarExtent) +
                                2 * m_thumbnails->frameWidth());

    auto* bar = new QToolBar;
    bar->setObjectName("toolbar");
    bar->setIconSize(QSize(20, 20));
    buildToolBar(bar);
    buildFindBar(bar);
    buildOutputBar(bar);

    auto* splitter = new QSplitter(Qt::Horizontal);
    splitter->addWidget(m_thumbnails);
    splitter->addWidget(m_view);
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(bar);
    layout->addWidget(splitter, 1);

    m_view->onCurrentPageChanged = [this] { pageChanged(); };
    m_view->onZoomChanged = [this] { zoomChanged(); };
    connect(m_thumbnails->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& index) {
                if (!m_syncing && index.isValid())
                    m_view->goToPage(std::size_t(index.row()));
            });

    QSize size(kDefaultWidth, kDefaultHeight);
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        size = size.boundedTo(screen->availableSize() * kMostOfScreen);
    resize(size);
    pageChanged();
    zoomChanged();
    m_view->setFocus();
}

PreviewWindow::~PreviewWindow() {
    // The view, the panel and its model draw with m_renderer; they go before it does (Qt would
    // delete them only after this window's members).
    delete m_thumbnails;
    delete m_model;
    delete m_view;
}

QAction* PreviewWindow::addCommand(QToolBar* bar, const QString& text, const QIcon& icon,
                                   const QList<QKeySequence>& keys, std::function<void()> run) {
    auto* action = new QAction(icon, text, this);
    action->setShortcuts(keys);
    action->setShortcutContext(Qt::WindowShortcut);
    QString tip = text;
    if (!keys.isEmpty())
        tip += " (" + keys.front().toString(QKeySequence::NativeText) + ")";
    action->setToolTip(tip);
    connect(action, &QAction::triggered, this, [run = std::move(run)] { run(); });
    if (bar)
        bar->addAction(action);
    addAction(action); // the keys work even when the toolbar is hidden
    return action;
}

void PreviewWindow::buildToolBar(QToolBar* bar) {
    m_thumbnailsAction = addCommand(
        bar, "Page thumbnails", themeIcon("view-sidetree", QStyle::SP_FileDialogListView, this),
        {QKeySequence(Qt::Key_F4)},
        [this] { setThumbnailsShown(m_thumbnailsAction->isChecked()); });
    m_thumbnailsAction->setCheckable(true);
    m_thumbnailsAction->setChecked(true);
    bar->addSeparator();
    addCommand(bar, "First page", themeIcon("go-first", QStyle::SP_MediaSkipBackward, this),
               {QKeySequence(Qt::CTRL | Qt::Key_Home)}, [this] { firstPage(); });
    addCommand(bar, "Previous page", themeIcon("go-previous", QStyle::SP_ArrowBack, this),
               {QKeySequence(Qt::CTRL | Qt::Key_PageUp)}, [this] { previousPage(); });

    m_pageBox = new QLineEdit;
    m_pageBox->setObjectName("pageBox");
    m_pageBox->setAlignment(Qt::AlignCenter);
    m_pageBox->setToolTip("Page: type a number and press Enter");
    m_pageBox->setFixedWidth(m_pageBox->fontMetrics().horizontalAdvance("00000 of 00000") + 16);
    connect(m_pageBox, &QLineEdit::returnPressed, this, [this] { pageBoxEntered(); });
    connect(m_pageBox, &QLineEdit::editingFinished, this, [this] { pageChanged(); });
    bar->addWidget(m_pageBox);

    addCommand(bar, "Next page", themeIcon("go-next", QStyle::SP_ArrowForward, this),
               {QKeySequence(Qt::CTRL | Qt::Key_PageDown)}, [this] { nextPage(); });
    addCommand(bar, "Last page", themeIcon("go-last", QStyle::SP_MediaSkipForward, this),
               {QKeySequence(Qt::CTRL | Qt::Key_End)}, [this] { lastPage(); });
    bar->addSeparator();

    addCommand(bar, "Zoom out", QIcon::fromTheme("zoom-out", magnifier(false, this)),
               {QKeySequence(Qt::CTRL | Qt::Key_Minus)}, [this] { zoomOut(); });
    m_zoomBox = new QComboBox;
    m_zoomBox->setObjectName("zoomBox");
    m_zoomBox->setEditable(true);
    m_zoomBox->setInsertPolicy(QComboBox::NoInsert);
    m_zoomBox->setToolTip("Zoom: pick a size or type a percentage from 50 to 400");
    for (const auto& choice : kFitChoices)
        m_zoomBox->addItem(choice.text);
    for (int step : kZoomSteps)
        m_zoomBox->addItem(percentText(step));
    m_zoomBox->setMinimumContentsLength(9);
    connect(m_zoomBox, &QComboBox::activated, this, [this](int index) {
        if (index < 0)
            return;
        if (std::size_t(index) < kFitChoices.size()) {
            setZoom(kFitChoices[std::size_t(index)].zoom);
        } else {
            setZoom({ZoomMode::Percent, kZoomSteps[std::size_t(index) - kFitChoices.size()]});
        }
    });
    connect(m_zoomBox->lineEdit(), &QLineEdit::returnPressed, this, [this] { zoomBoxEntered(); });
    bar->addWidget(m_zoomBox);
    addCommand(bar, "Zoom in", QIcon::fromTheme("zoom-in", magnifier(true, this)),
               {QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)},
               [this] { zoomIn(); });
    bar->addSeparator();
}

void PreviewWindow::buildFindBar(QToolBar* bar) {
    m_findBox = new QLineEdit;
    m_findBox->setObjectName("findBox");
    m_findBox->setPlaceholderText("Find");
    m_findBox->setClearButtonEnabled(true);
    m_findBox->setMaximumWidth(220);
    connect(m_findBox, &QLineEdit::returnPressed, this, [this] { findNext(); });
    connect(m_findBox, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (text.isEmpty())
            find(QString());
    });
    bar->addWidget(m_findBox);
    addCommand(nullptr, "Find", {}, {QKeySequence::Find}, [this] {
        m_findBox->setFocus();
        m_findBox->selectAll();
    });
    addCommand(bar, "Previous match", themeIcon("go-up", QStyle::SP_ArrowUp, this),
               {QKeySequence::FindPrevious}, [this] { findPrevious(); });
    addCommand(bar, "Next match", themeIcon("go-down", QStyle::SP_ArrowDown, this),
               {QKeySequence::FindNext}, [this] { findNext(); });
    m_findStatus = new QLabel;
    m_findStatus->setObjectName("findStatus");
    m_findStatus->setMinimumWidth(m_findStatus->fontMetrics().horizontalAdvance("0000 of 0000"));
    m_findStatus->setContentsMargins(6, 0, 6, 0);
    bar->addWidget(m_findStatus);
    bar->addSeparator();
}

void PreviewWindow::buildOutputBar(QToolBar* bar) {
    const auto withText = [bar](QAction* action) {
        if (auto* button = qobject_cast<QToolButton*>(bar->widgetForAction(action)))
            button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    };
    withText(addCommand(bar, "Print...", themeIcon("document-print", QStyle::SP_DriveFDIcon, this),
                        {QKeySequence::Print}, [this] { printWithDialog(); }));
    withText(addCommand(bar, "PDF...",
                        themeIcon("document-save", QStyle::SP_DialogSaveButton, this), {},
                        [this] { exportPdfWithDialog(); }));
    withText(addCommand(bar, "Workbook...",
                        themeIcon("x-office-spreadsheet", QStyle::SP_FileIcon, this), {},
                        [this] { exportWorkbookWithDialog(); }));
    auto* spacer = new QWidget;
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    bar->addWidget(spacer);
    withText(addCommand(bar, "Close", themeIcon("window-close", QStyle::SP_DialogCloseButton, this),
                        {QKeySequence(Qt::CTRL | Qt::Key_W)}, [this] { reject(); }));
}

std::size_t PreviewWindow::currentPage() const {
    return m_view->currentPage();
}

void PreviewWindow::firstPage() {
    goToPage(0);
}

void PreviewWindow::previousPage() {
    if (currentPage() > 0)
        goToPage(currentPage() - 1);
}

void PreviewWindow::nextPage() {
    goToPage(currentPage() + 1);
}

void PreviewWindow::lastPage() {
    goToPage(pageCount() == 0 ? 0 : pageCount() - 1);
}

void PreviewWindow::goToPage(std::size_t index) {
    m_view->goToPage(index);
    pageChanged(); // also when the page stays the same, to put the page box right again
}

QString PreviewWindow::pageBoxText() const {
    const std::size_t shown = pageCount() == 0 ? 0 : currentPage() + 1;
    return QString("%1 of %2").arg(shown).arg(pageCount());
}

void PreviewWindow::pageChanged() {
    if (!m_pageBox->hasFocus() || !m_pageBox->isModified()) {
        m_pageBox->setText(pageBoxText());
        m_pageBox->setModified(false);
    }
    if (pageCount() == 0)
        return;
    const QModelIndex row = m_model->index(int(currentPage()));
    m_syncing = true;
    m_thumbnails->selectionModel()->setCurrentIndex(row, QItemSelectionModel::ClearAndSelect);
    m_thumbnails->scrollTo(row);
    m_syncing = false;
}

void PreviewWindow::pageBoxEntered() {
    static const QRegularExpression number("^\\s*(\\d+)");
    const auto found = number.match(m_pageBox->text());
    bool ok = false;
    const qlonglong wanted = found.hasMatch() ? found.captured(1).toLongLong(&ok) : 0;
    m_pageBox->setModified(false);
    if (ok && wanted >= 1 && std::size_t(wanted) <= pageCount()) {
        goToPage(std::size_t(wanted - 1));
        m_view->setFocus();
    } else {
        m_pageBox->setText(pageBoxText());
        m_pageBox->selectAll();
    }
}

Zoom PreviewWindow::zoom() const {
    return m_view->zoom();
}

int PreviewWindow::zoomPercent() const {
    return m_view->zoomPercent();
}

void PreviewWindow::setZoom(const Zoom& zoom) {
    m_view->setZoom(zoom);
    zoomChanged();
}

void PreviewWindow::zoomIn() {
    m_view->zoomIn();
    zoomChanged();
}

void PreviewWindow::zoomOut() {
    m_view->zoomOut();
    zoomChanged();
}

void PreviewWindow::zoomChanged() {
    const Zoom zoom = m_view->zoom();
    for (const auto& choice : kFitChoices) {
        if (zoom.mode == choice.zoom.mode) {
            m_zoomBox->setEditText(choice.text);
            return;
        }
    }
    m_zoomBox->setEditText(percentText(zoom.percent));
}

void PreviewWindow::zoomBoxEntered() {
    static const QRegularExpression number("^\\s*(\\d+)\\s*%?\\s*$");
    const QString text = m_zoomBox->currentText();
    for (const auto& choice : kFitChoices) {
        if (text.compare(choice.text, Qt::CaseInsensitive) == 0) {
            setZoom(choice.zoom);
            return;
        }
    }
    const auto found = number.match(text);
    if (found.hasMatch())
        setZoom({ZoomMode::Percent, clampZoomPercent(found.captured(1).toInt())});
    zoomChanged(); // shows the scale taken, or puts back the one kept
}

void PreviewWindow::find(const QString& text) {
    if (m_findBox->text() != text)
        m_findBox->setText(text);
    runSearch();
    if (!m_view->matches().empty())
        m_view->showMatch(stepMatch(m_view->matches(), -1, true, currentPage()));
    m_findStatus->setText(findStatusText());
}

void PreviewWindow::runSearch() {
    m_searched = m_findBox->text();
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    m_view->setMatches(m_finder.find(m_pages, m_searched.toStdString()));
    QGuiApplication::restoreOverrideCursor();
}

void PreviewWindow::findNext() {
    if (m_findBox->text() != m_searched) {
        find(m_findBox->text());
        return;
    }
    m_view->showMatch(stepMatch(m_view->matches(), m_view->currentMatch(), true, currentPage()));
    m_findStatus->setText(findStatusText());
}

void PreviewWindow::findPrevious() {
    if (m_findBox->text() != m_searched)
        runSearch();
    m_view->showMatch(stepMatch(m_view->matches(), m_view->currentMatch(), false, currentPage()));
    m_findStatus->setText(findStatusText());
}

std::size_t PreviewWindow::matchCount() const {
    return m_view->matches().size();
}

int PreviewWindow::currentMatch() const {
    return m_view->currentMatch();
}

QString PreviewWindow::findStatusText() const {
    if (m_searched.trimmed().isEmpty())
        return {};
    if (matchCount() == 0)
        return "No matches";
    if (currentMatch() < 0)
        return QString("%1 matches").arg(matchCount());
    return QString("%1 of %2").arg(currentMatch() + 1).arg(matchCount());
}

void PreviewWindow::setThumbnailsShown(bool shown) {
    m_thumbnails->setVisible(shown);
    m_thumbnailsAction->setChecked(shown);
    if (shown)
        pageChanged();
}

bool PreviewWindow::thumbnailsShown() const {
    return m_thumbnails->isVisibleTo(this);
}

void PreviewWindow::exportPdf(const std::filesystem::path& path) const {
    writePdf(m_pages, path);
}

void PreviewWindow::exportWorkbook(const std::filesystem::path& path) const {
    writeWorkbook(m_pages, path);
}

QString PreviewWindow::suggestedFile(const QString& suffix) const {
    QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (folder.isEmpty() || !QDir(folder).exists())
        folder = QDir::currentPath();
    return QDir(folder).filePath(QString::fromStdString(previewFileStem(m_title)) + "." + suffix);
}

std::filesystem::path PreviewWindow::askForFile(const QString& caption, const QString& filter,
                                                const QString& suffix) {
    QFileDialog dialog(this, caption, suggestedFile(suffix), filter);
    dialog.setObjectName("exportDialog");
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(suffix);
    dialog.selectFile(suggestedFile(suffix));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    return std::filesystem::path(dialog.selectedFiles().front().toStdString());
}

void PreviewWindow::exportPdfWithDialog() {
    const auto path = askForFile("Export to PDF", "PDF files (*.pdf)", "pdf");
    if (path.empty())
        return;
    try {
        exportPdf(path);
    } catch (const std::exception& e) {
        showFailure("The PDF could not be written.", e);
    }
}

void PreviewWindow::exportWorkbookWithDialog() {
    const auto path = askForFile("Export to a workbook", "Excel 97-2003 workbooks (*.xls)", "xls");
    if (path.empty())
        return;
    try {
        exportWorkbook(path);
    } catch (const std::exception& e) {
        showFailure("The workbook could not be written.", e);
    }
}

void PreviewWindow::printWithDialog() {
    if (pageCount() == 0)
        return;
    QPrinter printer(QPrinter::HighResolution);
    setUpPrinter(printer, m_pages, m_title);
    QPrintDialog dialog(&printer, this);
    dialog.setObjectName("printDialog");
    dialog.setOptions(QAbstractPrintDialog::PrintPageRange |
                      QAbstractPrintDialog::PrintCurrentPage | QAbstractPrintDialog::PrintToFile |
                      QAbstractPrintDialog::PrintShowPageSize |
                      QAbstractPrintDialog::PrintCollateCopies);
    dialog.setMinMax(1, int(pageCount()));
    if (dialog.exec() != QDialog::Accepted)
        return;
    std::size_t first = 0;
    std::size_t last = pageCount() - 1;
    if (printer.printRange() == QPrinter::PageRange && printer.fromPage() > 0) {
        first = std::size_t(printer.fromPage() - 1);
        last = std::size_t(std::max(printer.toPage(), printer.fromPage()) - 1);
    } else if (printer.printRange() == QPrinter::CurrentPage) {
        first = last = currentPage();
    }
    try {
        printPageRange(printer, m_pages, first, last, m_title);
    } catch (const std::exception& e) {
        showFailure("The report could not be printed.", e);
    }
}

void PreviewWindow::showFailure(const QString& what, const std::exception& error) {
    QMessageBox box(QMessageBox::Critical, windowTitle(), what + "\n\n" + error.what(),
                    QMessageBox::Ok, this);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

void WindowPreview::show(const page::Pages& pages, const std::string& title) {
    ensureGuiApplication();
    PreviewWindow window(pages, title);
    window.setWindowModality(Qt::ApplicationModal);
    window.exec();
}

} // namespace qr::output
