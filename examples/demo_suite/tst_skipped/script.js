check.fail("This test case is meant to be skipped with --skip tst_skipped");
