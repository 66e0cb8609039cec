section("Login", "Opens the session of a user", function () {
    log.info("Entering the name");
    section("Password", function () {
        check.that(true, "The field hides what is typed");
    });
});
section("Logout", function () {
    check.equal("goodbye", "goodbye", "The parting words");
});
startSection("Left open", "The runner closes it at the end of the test case");
log.info("Inside the open section");
