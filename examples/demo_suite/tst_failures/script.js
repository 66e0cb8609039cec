check.equal("colour", "color", "Spelling");
check.equal(41, 42, "The answer");
check.that([].length > 0, "The list is not empty");
check.fail("A decision of the script", "With details that say what was wrong.");
log.warning("A warning does not fail a test case");
log.error("An error does", "It says that something could not be done.");
