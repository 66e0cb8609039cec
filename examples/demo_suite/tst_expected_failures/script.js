check.equal(1 + 1, 3, "A known bug", { expectFail: true });
check.that(true, "Passes as it should");
