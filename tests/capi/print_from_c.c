/* Prints from C through the installed libquarvex-reports: a request string and a typed method
 * into PDF files, the missing-connection error, and failures through the host's callbacks.
 * Usage: print_from_c DIR, where DIR holds vendor.db, master.db and data/ from make-sample. */
#define _POSIX_C_SOURCE 200112L
#include <quarvex_reports.h>

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

static int failures = 0;
#define CHECK(cond)                                                                  \
    do {                                                                             \
        if (!(cond)) {                                                               \
            fprintf(stderr, "%s:%d: failed: %s\n", __FILE__, __LINE__, #cond);       \
            ++failures;                                                              \
        }                                                                            \
    } while (0)

/* What the host's callbacks saw. */
typedef struct {
    int dialogs, boxes, usages, logged_errors;
    char title[128], text[2048], label[128];
} seen;

static void copy(char* to, size_t size, const char* from) {
    strncpy(to, from ? from : "", size - 1);
    to[size - 1] = '\0';
}
static void on_dialog(void* data, const char* title, const char* text) {
    seen* s = (seen*)data;
    ++s->dialogs;
    copy(s->title, sizeof s->title, title);
    copy(s->text, sizeof s->text, text);
}
static void on_box(void* data, const char* title, const char* text, quarvex_icon icon) {
    seen* s = (seen*)data;
    (void)icon;
    ++s->boxes;
    copy(s->title, sizeof s->title, title);
    copy(s->text, sizeof s->text, text);
}
static void on_usage(void* data, const char* outcome, const char* category, const char* label,
                     const char* error_text) {
    seen* s = (seen*)data;
    (void)outcome;
    (void)category;
    if (error_text) {
        ++s->logged_errors;
    } else {
        ++s->usages;
        copy(s->label, sizeof s->label, label);
    }
}

/* Whether PATH exists and starts as a PDF does. */
static int is_pdf(const char* path) {
    char head[5] = {0};
    FILE* f = fopen(path, "rb");
    if (!f) return 0;
    if (fread(head, 1, 4, f) != 4) head[0] = '\0';
    fclose(f);
    return strcmp(head, "%PDF") == 0;
}

static char* read_file(const char* path) {
    FILE* f = fopen(path, "rb");
    long size;
    char* text;
    if (!f) return NULL;
    fseek(f, 0, SEEK_END);
    size = ftell(f);
    fseek(f, 0, SEEK_SET);
    text = (char*)calloc((size_t)size + 1, 1);
    if (text && fread(text, 1, (size_t)size, f) != (size_t)size) text[0] = '\0';
    fclose(f);
    return text;
}

/* Prints into OUT instead of on a printer. */
static void print_to(char* out, size_t size, const char* dir, const char* name) {
    char printer[4096 + 8];
    snprintf(out, size, "%s/%s", dir, name);
    snprintf(printer, sizeof printer, "file:%s", out);
    setenv("QUARVEX_PRINTER", printer, 1);
}

int main(int argc, char** argv) {
    const char* dir = argc > 1 ? argv[1] : ".";
    char vendor[4096], master[4096], path[4096], pdf[4096];
    char* cut_labels;
    const char* package[] = {"armarkup", "finallaborar"};
    quarvex_service* service = NULL;
    seen s;
    memset(&s, 0, sizeof s);
    snprintf(vendor, sizeof vendor, "sqlite:%s/vendor.db", dir);
    snprintf(master, sizeof master, "sqlite:%s/master.db", dir);
    snprintf(path, sizeof path, "%s/data/PrintCutLabelsLarge-job1.json", dir);
    cut_labels = read_file(path);
    CHECK(cut_labels != NULL);

    CHECK(strlen(quarvex_version()) > 0);
    CHECK(quarvex_service_create(&service) == QUARVEX_OK);

    /* PrintReport needs both connections first: error 999. */
    CHECK(quarvex_print_report(service, "armarkup MarkupReport1 false 1 1 false false false |x |") ==
          QUARVEX_E_NOT_CONNECTED);
    CHECK(quarvex_last_error_number(service) == 999);
    CHECK(strstr(quarvex_last_error(service), "Cannot call PrintReport()") != NULL);
    CHECK(quarvex_set_vendor_connection(service, "nosuchdriver:x") == QUARVEX_E_CONNECTION);
    CHECK(strlen(quarvex_last_error(service)) > 0);

    CHECK(quarvex_set_vendor_connection(service, vendor) == QUARVEX_OK);
    CHECK(quarvex_set_master_connection(service, master) == QUARVEX_OK);
    CHECK(quarvex_set_error_dialog(service, on_dialog, &s) == QUARVEX_OK);
    CHECK(quarvex_set_message_box(service, on_box, &s) == QUARVEX_OK);
    CHECK(quarvex_set_usage_log(service, on_usage, &s) == QUARVEX_OK);

    /* A request and a typed method, each printed without a preview into a PDF file. */
    print_to(pdf, sizeof pdf, dir, "request.pdf");
    CHECK(quarvex_print_report(service, "armarkup MarkupReport1 false 1 1 false false false |x |") ==
          QUARVEX_OK);
    CHECK(is_pdf(pdf));
    CHECK(strcmp(s.label, "PrintReport-armarkup") == 0);
    print_to(pdf, sizeof pdf, dir, "typed.pdf");
    CHECK(quarvex_call_method(service, "PrintCutLabelsLarge", cut_labels, NULL, QUARVEX_FALSE,
                              QUARVEX_FALSE, QUARVEX_FALSE, NULL) == QUARVEX_OK);
    CHECK(is_pdf(pdf));
    snprintf(pdf, sizeof pdf, "%s/package.pdf", dir);
    CHECK(quarvex_print_bid_package(service, 1, 1, pdf, package, 2) == QUARVEX_OK);
    CHECK(is_pdf(pdf));
    CHECK(s.dialogs == 0 && s.boxes == 0);

    /* Failures reach the host's own dialogs, and the call says one was shown. */
    CHECK(quarvex_print_report(service, "nosuchreport T false 1 1 false false false |x |") ==
          QUARVEX_SHOWN_ERROR);
    CHECK(s.boxes == 1 && strcmp(quarvex_last_error(service), s.text) == 0);
    CHECK(quarvex_call_method(service, "PrintCutLabelsLarge", "{not json", NULL, QUARVEX_FALSE,
                              QUARVEX_FALSE, QUARVEX_FALSE, NULL) == QUARVEX_SHOWN_ERROR);
    CHECK(s.dialogs == 1 && strcmp(s.title, "Quarvex Error") == 0);
    CHECK(strstr(s.text, "Function: PrintCutLabelsLarge") != NULL);
    CHECK(s.logged_errors == 1);
    CHECK(quarvex_call_method(service, "PrintNothing", "{}", NULL, QUARVEX_TRUE, QUARVEX_FALSE,
                              QUARVEX_FALSE, NULL) == QUARVEX_E_UNKNOWN_METHOD);

    CHECK(quarvex_service_free(service) == QUARVEX_OK);
    free(cut_labels);
    printf("print_from_c: %d failed\n", failures);
    return failures == 0 ? 0 : 1;
}
