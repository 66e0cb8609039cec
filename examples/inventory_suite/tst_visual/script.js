application.start("inventory");
check.point("shelf", {object: "picture", type: "Visual"});
