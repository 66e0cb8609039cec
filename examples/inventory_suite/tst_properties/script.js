application.start("inventory");
check.point("window");
check.point("picture_size");

// The application takes a moment to count.
find("countStock").click();
check.point("counted", {retry: 5000});
