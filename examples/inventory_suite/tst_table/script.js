application.start("inventory");
check.point("stock");

section("After a removal", function () {
    find("articles").click(10, 10);
    find("{type='QAction' name='remove'}").click();
    check.point("without_bolts");
});
