#!/usr/bin/python3
"""What script/races tells of the thread sanitizer's reports: races_test.py SCRIPT"""
import subprocess
import sys
import tempfile
import unittest

OURS = '    #0 embedded::data::Counter::add ../embedded/data/Counter.cpp:9 (proportions+0x12)'
ENGINE = '    #0 duckdb::Executor::Work() <null> (libduckdb.so+0x34)'
FREED = '    #0 operator delete(void*) ../../src/libsanitizer/tsan/tsan_new_delete.cpp:126 (libtsan.so.2+0x1)'
STRING = '    #1 std::string::_M_mutate(unsigned long) <null> (libstdc++.so.6+0x13fd1f)'


def race(first, second):
    return '\n'.join(['WARNING: ThreadSanitizer: data race (pid=7)', '  Read of size 8 at 0x1 by thread T1:', *first, '',
                      '  Previous write of size 8 at 0x1 by main thread:', *second, '',
                      '  Location is heap block of size 31 at 0x1 allocated by main thread:', OURS, '',
                      'SUMMARY: ThreadSanitizer: data race somewhere', '=================='])


WITHIN = race([ENGINE], [ENGINE, OURS])


class Races(unittest.TestCase):
    def judge(self, *reports):
        with tempfile.NamedTemporaryFile('w', suffix='.7') as file:
            file.write('\n'.join([*reports, 'ThreadSanitizer: reported 1 warnings\n']))
            file.flush()
            done = subprocess.run([SCRIPT, file.name], capture_output=True, text=True, check=False)
        return done.returncode, done.stdout

    def test_within_the_engine_are_counted_only(self):
        status, out = self.judge(WITHIN, WITHIN)
        self.assertEqual(status, 0)
        self.assertEqual(out, '2 reports of races, 2 of them within the engine; 0 cut short\n')

    def test_between_functions_of_ours_fail(self):
        status, out = self.judge(WITHIN, race([OURS], [FREED, OURS.replace('#0', '#1')]))
        self.assertEqual(status, 1)
        self.assertIn('2 reports of races, 1 of them within the engine', out)
        self.assertIn('Counter.cpp:9', out)

    def test_of_a_thread_without_functions_of_ours_are_the_engines(self):
        self.assertEqual(self.judge(race([FREED, STRING], [OURS]))[0], 0)

    def test_through_the_library_are_of_who_called_it(self):
        called = [FREED, STRING, OURS.replace('#0', '#2')]
        self.assertEqual(self.judge(race(called, called))[0], 1)

    def test_that_ended_the_process_fail(self):
        status, out = self.judge(WITHIN, 'ThreadSanitizer: CHECK failed: somewhere')
        self.assertEqual(status, 1)
        self.assertIn('CHECK failed', out)

    def test_cut_short_by_a_test_are_told(self):
        status, out = self.judge(WITHIN, WITHIN.split('  Previous')[0])
        self.assertEqual(status, 0)
        self.assertIn('1 cut short', out)

    def test_none_at_all_fail(self):
        self.assertEqual(self.judge()[0], 1)


if __name__ == '__main__':
    SCRIPT = sys.argv.pop(1)
    unittest.main()
