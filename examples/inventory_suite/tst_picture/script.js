application.start("inventory");
check.point("picture");
