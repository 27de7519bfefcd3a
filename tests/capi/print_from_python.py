#!/usr/bin/env python3
"""Prints from Python through the installed libquarvex-reports, with ctypes only: a typed
method, a request and a bid package into PDF files, errors through the host's callbacks.

Usage: print_from_python.py LIBRARY QUARVEX_REPORTS WORK
LIBRARY is the installed libquarvex-reports.so, QUARVEX_REPORTS the installed command (it makes
the sample databases), WORK an empty folder for the databases and the printed files."""
import ctypes
import glob
import os
import re
import shutil
import subprocess
import sys
import threading
import unittest

LIBRARY, PROGRAM, WORK = sys.argv[1:4]
OK, SHOWN_ERROR, INVALID_ARGUMENT, WRONG_THREAD = 0, 1, 5, 6
TRUE, FALSE = -1, 0  # the host's 16-bit Booleans

lib = ctypes.CDLL(LIBRARY)
Service = ctypes.c_void_p
ErrorDialog = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_char_p, ctypes.c_char_p)
UsageLog = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_char_p, ctypes.c_char_p,
                            ctypes.c_char_p, ctypes.c_char_p)
lib.quarvex_version.restype = ctypes.c_char_p
lib.quarvex_method_name.restype = ctypes.c_char_p
lib.quarvex_method_name.argtypes = [ctypes.c_size_t]
lib.quarvex_service_create.argtypes = [ctypes.POINTER(Service)]
lib.quarvex_service_free.argtypes = [Service]
for name in ("quarvex_set_vendor_connection", "quarvex_set_master_connection",
             "quarvex_print_report"):
    getattr(lib, name).argtypes = [Service, ctypes.c_char_p]
lib.quarvex_set_error_dialog.argtypes = [Service, ErrorDialog, ctypes.c_void_p]
lib.quarvex_set_usage_log.argtypes = [Service, UsageLog, ctypes.c_void_p]
lib.quarvex_call_method.argtypes = [Service, ctypes.c_char_p, ctypes.c_char_p, ctypes.c_char_p,
                                    ctypes.c_short, ctypes.c_short, ctypes.c_short,
                                    ctypes.c_char_p]
lib.quarvex_print_bid_package.argtypes = [Service, ctypes.c_int, ctypes.c_int, ctypes.c_char_p,
                                          ctypes.POINTER(ctypes.c_char_p), ctypes.c_size_t]
lib.quarvex_bid_package_report_name.restype = ctypes.c_char_p
lib.quarvex_bid_package_report_name.argtypes = [ctypes.c_size_t]
lib.quarvex_last_error.restype = ctypes.c_char_p
lib.quarvex_last_error.argtypes = [Service]


def is_pdf(path):
    with open(path, "rb") as f:
        return f.read(4) == b"%PDF"


class PrintFromPython(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        shutil.rmtree(WORK, ignore_errors=True)
        os.makedirs(WORK)
        subprocess.run([PROGRAM, "make-sample", "--vendor", f"sqlite:{WORK}/vendor.db",
                        "--master", f"sqlite:{WORK}/master.db", "--data-dir", f"{WORK}/data"],
                       check=True, stdout=subprocess.DEVNULL)

    def setUp(self):
        self.dialogs, self.usage = [], []
        self.service = Service()
        self.assertEqual(lib.quarvex_service_create(ctypes.byref(self.service)), OK)
        for setter, db in ((lib.quarvex_set_vendor_connection, "vendor"),
                           (lib.quarvex_set_master_connection, "master")):
            self.assertEqual(setter(self.service, f"sqlite:{WORK}/{db}.db".encode()), OK)
        # ctypes keeps a callback alive only while Python holds it.
        self.on_dialog = ErrorDialog(lambda _, title, text: self.dialogs.append((title, text)))
        self.on_usage = UsageLog(lambda _, outcome, category, label, error:
                                 self.usage.append((outcome, label, error)))
        lib.quarvex_set_error_dialog(self.service, self.on_dialog, None)
        lib.quarvex_set_usage_log(self.service, self.on_usage, None)

    def tearDown(self):
        self.assertEqual(lib.quarvex_service_free(self.service), OK)

    def call(self, method, data, **options):
        return lib.quarvex_call_method(self.service, method.encode(), data, WORK.encode(),
                                       options.get("preview", TRUE), options.get("excel", FALSE),
                                       options.get("pdf", FALSE), None)

    def test_version_and_methods_match_the_command(self):
        self.assertRegex(lib.quarvex_version().decode(), r"^\d+\.\d+\.\d+$")
        names, i = [], 0
        while lib.quarvex_method_name(i):
            names.append(lib.quarvex_method_name(i).decode())
            i += 1
        listed = subprocess.run([PROGRAM, "call", "--list"], check=True, capture_output=True,
                                text=True).stdout
        self.assertEqual(names, re.findall(r"^(\w+)\(", listed, re.M))

    def test_typed_method_exports_pdf_into_the_job_folder(self):
        with open(f"{WORK}/data/PrintOptimizedCutListReport-job1.json", "rb") as f:
            data = f.read()
        os.environ["QUARVEX_PRINTER"] = f"file:{WORK}/cut-list-printed.pdf"
        self.assertEqual(self.call("PrintOptimizedCutListReport", data, preview=FALSE, pdf=TRUE),
                         OK, lib.quarvex_last_error(self.service))
        exported = glob.glob(f"{WORK}/Jobs/*/Reports/*.pdf")
        self.assertEqual(len(exported), 1)
        self.assertTrue(is_pdf(exported[0]) and is_pdf(f"{WORK}/cut-list-printed.pdf"))

    def test_request_prints_and_logs_through_the_callback(self):
        os.environ["QUARVEX_PRINTER"] = f"file:{WORK}/labor.pdf"
        request = b"finallaborar LaborReport1 false 1 1 false false false |x |"
        self.assertEqual(lib.quarvex_print_report(self.service, request), OK)
        self.assertTrue(is_pdf(f"{WORK}/labor.pdf"))
        self.assertIn((b"Printed (No Preview)", b"PrintReport-finallaborar", None), self.usage)

    def test_bad_report_data_reaches_the_host_dialog(self):
        self.assertEqual(self.call("PrintMetalCutListing", b"[1, 2"), SHOWN_ERROR)
        self.assertEqual(len(self.dialogs), 1)
        title, text = self.dialogs[0]
        self.assertEqual(title, b"Quarvex Error")
        self.assertIn(b"Function: PrintMetalCutListing", text)
        self.assertEqual(lib.quarvex_last_error(self.service), text)

    def test_bid_package_of_the_default_reports_or_none(self):
        out = f"{WORK}/package.pdf"
        self.assertEqual(lib.quarvex_print_bid_package(self.service, 1, 1, out.encode(), None, 0),
                         OK, lib.quarvex_last_error(self.service))
        self.assertTrue(is_pdf(out))
        os.remove(out)
        names = (ctypes.c_char_p * 2)(lib.quarvex_bid_package_report_name(0), b"nosuchreport")
        self.assertEqual(lib.quarvex_print_bid_package(self.service, 1, 1, out.encode(), names, 2),
                         INVALID_ARGUMENT)
        self.assertIn(b"nosuchreport", lib.quarvex_last_error(self.service))
        self.assertFalse(os.path.exists(out))

    def test_service_is_refused_on_another_thread(self):
        status = []
        worker = threading.Thread(target=lambda: status.append(
            lib.quarvex_print_report(self.service, b"armarkup T false 1 1 false false false |x |")))
        worker.start()
        worker.join()
        self.assertEqual(status, [WRONG_THREAD])
        self.assertEqual(self.usage, [])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
