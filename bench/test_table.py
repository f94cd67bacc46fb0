#!/usr/bin/env python3
"""Checks bench/table.py on hand-made benchmark output, odd and broken entries included."""

import contextlib
import io
import json
import os
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
import table  # noqa: E402


def entry(name, cpu, unit="ms", real=None, **extra):
    e = {"name": name, "run_name": name, "run_type": "iteration", "cpu_time": cpu,
         "real_time": cpu if real is None else real, "time_unit": unit}
    e.update(extra)
    return e


def median(name, cpu, unit="ms", real=None, **extra):
    e = entry(name, cpu, unit, real, **extra)
    e.update({"name": name + "_median", "run_type": "aggregate", "aggregate_name": "median"})
    return e


class TableTest(unittest.TestCase):
    def rows(self, *files):
        paths = []
        with tempfile.TemporaryDirectory() as folder:
            for i, content in enumerate(files):
                path = os.path.join(folder, "%d.json" % i)
                with open(path, "w", encoding="utf-8") as f:
                    f.write(content if isinstance(content, str) else json.dumps(content))
                paths.append(path)
            with contextlib.redirect_stderr(io.StringIO()):
                figures, order, _ = table.load(paths)
        return table.build_rows(figures, order)

    def find(self, rows, figure, size, against):
        current = None
        for row in rows:
            if row["figure"]:
                current = (row["figure"], row["size"])
            if current == (figure, size) and row["vs"] == against:
                return row
        self.fail("no row %s/%s against %s in %r" % (figure, size, against, rows))

    def test_ratio_against_each_reference(self):
        rows = self.rows({"benchmarks": [
            entry("iopage_show/ours/1024", 1.0), entry("iopage_show/ref_combo_fill/1024", 2.0),
            entry("iopage_show/ref_shown_fill/1024", 0.5)]})
        self.assertEqual(self.find(rows, "iopage_show", "1024", "ref_combo_fill")["ratio"], "0.500x")
        self.assertEqual(self.find(rows, "iopage_show", "1024", "ref_combo_fill")["met"], "yes")
        self.assertEqual(self.find(rows, "iopage_show", "1024", "ref_shown_fill")["ratio"], "2.000x")

    def test_port_sort_is_judged_by_the_frame_alone(self):
        rows = self.rows({"benchmarks": [
            entry("portsort/ours/1024", 16.0), entry("portsort/ours/8192", 16.1),
            entry("portsort/ref_tokenise/8192", 1000.0)]})
        self.assertEqual(self.find(rows, "portsort", "1024", "limit")["met"], "yes")
        self.assertEqual(self.find(rows, "portsort", "8192", "limit")["met"], "NO")
        self.assertNotIn(self.find(rows, "portsort", "8192", "ref_tokenise")["met"], ("yes", "NO"))

    def test_ratio_just_over_a_limit_shows_as_over(self):
        rows = self.rows({"benchmarks": [
            entry("iopage_show/ours/1024", 1.503), entry("iopage_show/ref_combo_fill/1024", 1.0)]})
        row = self.find(rows, "iopage_show", "1024", "ref_combo_fill")
        self.assertEqual((row["ratio"], row["met"]), ("1.503x", "NO"))

    def test_median_of_repetitions_is_used(self):
        rows = self.rows({"benchmarks": [
            entry("logline/ours", 9.0, "us"), median("logline/ours", 2.0, "us"),
            median("logline/ref_textstream", 1.0, "us")]})
        self.assertEqual(rows[0]["ours"], "2 us")
        self.assertEqual(self.find(rows, "logline", "", "ref_textstream")["ratio"], "2.000x")

    def test_added_suffixes_dropped_and_own_time_used(self):
        rows = self.rows({"benchmarks": [
            entry("startup/ours/iterations:8/manual_time", 0.001, "ms", real=60.0,
                  memory_bytes=5 * 2**20),
            entry("startup/ref_forms/iterations:8/manual_time", 0.001, "ms", real=3.0,
                  memory_bytes=2**20)]})
        self.assertEqual(self.find(rows, "startup", "", "limit")["met"], "yes")
        self.assertEqual(self.find(rows, "startup", "", "ref_forms")["ratio"], "20.0x")
        self.assertEqual(self.find(rows, "startup_memory", "", "ref_forms")["ratio"], "5.000x")

    def test_growth_compared_with_n_log_n(self):
        rows = self.rows({"benchmarks": [
            entry("iopage_show/ours/1024", 10.0), entry("iopage_show/ours/8192", 200.0)]})
        growth = self.find(rows, "iopage_show", "8192", "ours at 1024")
        self.assertEqual(growth["ratio"], "20.0x")
        self.assertEqual(growth["met"], "NO")

    def test_growth_only_between_scale_sizes(self):
        rows = self.rows({"benchmarks": [
            entry("portsort/ours/1024", 10.0), entry("portsort/ours/8192", 80.0),
            entry("portsort/ours/10000", 200.0)]})
        self.assertEqual(self.find(rows, "portsort", "8192", "ours at 1024")["met"], "yes")
        self.assertFalse([r for r in rows if r.get("vs") == "ours at 8192"])

    def test_broken_input_is_reported_not_fatal(self):
        rows = self.rows(
            "not json at all",
            {"benchmarks": "not a list"},
            {"benchmarks": [
                "not an object",
                {"name": 42},
                entry("noslash", 1.0),
                entry("parser/ours/console_discarded", float("nan")),
                entry("parser/ref_compile_per_call/console_discarded", "fast"),
                entry("chart_paint/ours", 1.0, unit="fortnights"),
                entry("logline/ours", 1.0),
                entry("logline/ref_textstream", 0.0),
                {"name": "simulator_save/ours/all_sets", "run_name": "simulator_save/ours/all_sets",
                 "error_occurred": True, "error_message": "disk full"},
            ]})
        self.assertEqual(self.find(rows, "noslash", "", "-")["ours"], "1 ms")
        self.assertEqual(self.find(rows, "parser", "console_discarded", "limit")["met"], "")
        self.assertEqual(self.find(rows, "logline", "", "ref_textstream")["ratio"], "-")
        self.assertIn("disk full", self.find(rows, "simulator_save", "all_sets", "-")["ours"])

    def test_reference_without_ours_still_shows(self):
        rows = self.rows({"benchmarks": [entry("chart_paint/ref_picture_replay", 1.0)]})
        self.assertEqual(self.find(rows, "chart_paint", "", "ref_picture_replay")["ratio"], "-")
        self.assertEqual(rows[0]["ours"], "-")


if __name__ == "__main__":
    unittest.main()
