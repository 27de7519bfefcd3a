#pragma once
// The preview window: a modal dialog over a report's finished pages, drawn by the printer's
// renderer, so what is seen is what prints and what the PDF shows. Toolbar and keys:
//   first, previous, next, last page   Ctrl+Home, Ctrl+PgUp, Ctrl+PgDown, Ctrl+End
//   page box "n of m"                  type a page number and Enter
//   zoom: fit page, fit width, 50-400 % Ctrl+wheel, Ctrl++ and Ctrl+-
//   page pictures in a side panel      F4 shows or hides them
//   find, next and previous match      Ctrl+F, Enter or F3, Shift+F3
//   print with the print dialog        Ctrl+P
//   export to PDF or to a workbook     with a file dialog
//   close                              Esc
// Pages scroll continuously; only what comes into view is drawn.

#include "platform/engine/page/page.hpp"
#include "platform/preview/painter_renderer.hpp"
#include "platform/preview/preview.hpp"
#include "platform/preview/preview_layout.hpp"
#include "platform/preview/preview_search.hpp"

#include <QDialog>
#include <QString>
#include <filesystem>
#include <string>

class QAction;
class QComboBox;
class QLabel;
class QLineEdit;
class QListView;
class QToolBar;

namespace qr::output {

class PageView;
class ThumbnailModel;

/// The modal preview of `pages` (which must outlive the window) titled `title`. Every command
/// of the toolbar is also a public function, which is how the window is driven in tests.
class PreviewWindow : public QDialog {
  public:
    PreviewWindow(const page::Pages& pages, const std::string& title, QWidget* parent = nullptr);
    ~PreviewWindow() override;

    std::size_t pageCount() const { return m_pages.pages.size(); }
    /// The page being read, from 0.
    std::size_t currentPage() const;
    void firstPage();
    void previousPage();
    void nextPage();
    void lastPage();
    /// Goes to page `index` (from 0), held within the pages.
    void goToPage(std::size_t index);
    /// What the page box shows: "n of m" (n from 1), "0 of 0" without pages.
    QString pageBoxText() const;

    Zoom zoom() const;
    void setZoom(const Zoom& zoom);
    void zoomIn();
    void zoomOut();
    /// The scale shown, in percent of the paper's size.
    int zoomPercent() const;

    /// Looks for `text` (ignoring case), highlights every match and goes to the first one on
    /// or after the current page. An empty text clears the highlights.
    void find(const QString& text);
    void findNext();
    void findPrevious();
    std::size_t matchCount() const;
    /// The match gone to, from 0; -1 before the first.
    int currentMatch() const;
    /// What the find bar says: "n of m", "No matches", or nothing.
    QString findStatusText() const;

    void setThumbnailsShown(bool shown);
    bool thumbnailsShown() const;

    /// Writes the pages as a PDF or as a workbook. Raises what writePdf / writeWorkbook raise.
    void exportPdf(const std::filesystem::path& path) const;
    void exportWorkbook(const std::filesystem::path& path) const;
    /// The toolbar's commands: ask for a file, write it, and show any failure in a message box.
    void exportPdfWithDialog();
    void exportWorkbookWithDialog();
    /// Prints with the print dialog: printer, pages and copies are the user's choice.
    void printWithDialog();

    PageView& pageView() { return *m_view; }
    QListView& thumbnails() { return *m_thumbnails; }
    const ThumbnailModel& thumbnailModel() const { return *m_model; }

  private:
    QAction* addCommand(QToolBar* bar, const QString& text, const QIcon& icon,
                        const QList<QKeySequence>& keys, std::function<void()> run);
    void buildToolBar(QToolBar* bar);
    void buildFindBar(QToolBar* bar);
    void buildOutputBar(QToolBar* bar);
    void pageChanged();
    void zoomChanged();
    void pageBoxEntered();
    void zoomBoxEntered();
    void runSearch();
    void showFailure(const QString& what, const std::exception& error);
    QString suggestedFile(const QString& suffix) const;
    std::filesystem::path askForFile(const QString& caption, const QString& filter,
                                     const QString& suffix);

    const page::Pages& m_pages;
    std::string m_title;
    PainterRenderer m_renderer;
    TextFinder m_finder;
    PageView* m_view = nullptr;
    QListView* m_thumbnails = nullptr;
    ThumbnailModel* m_model = nullptr;
    QLineEdit* m_pageBox = nullptr;
    QComboBox* m_zoomBox = nullptr;
    QLineEdit* m_findBox = nullptr;
    QLabel* m_findStatus = nullptr;
    QAction* m_thumbnailsAction = nullptr;
    QString m_searched;     // the text the highlighted matches are for
    bool m_syncing = false; // the panel follows the view; do not echo back
};

/// Shows pages in the preview window and returns when the user closes it. Must run on Qt's
/// application thread with a display (see desktop_session.hpp).
class WindowPreview final : public PreviewPresenter {
  public:
    void show(const page::Pages& pages, const std::string& title) override;
};

} // namespace qr::output
