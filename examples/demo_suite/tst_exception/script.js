include("shared.js");

function callTheHelper(customer) {
    return nameOf(customer);
}

check.equal(callTheHelper({ name: "Ada" }), "Ada", "The helper works");
callTheHelper(undefined);
log.info("Never reached");
