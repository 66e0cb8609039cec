log.info("Checks that pass", "Each check is a verification of its own.");
check.that(2 > 1, "A condition");
check.equal("blue", "blue", "Two texts");
check.equal(6 * 7, 42, "Two numbers");
check.equal({ name: "Ada", tags: [1, 2] }, { name: "Ada", tags: [1, 2] }, "Two structures");
check.pass("A decision of the script", "Whatever the script looked at was right.");
