section("In the middle of something", function () {
    log.info("This line is in the report although the process dies");
    abortProcess();
});
