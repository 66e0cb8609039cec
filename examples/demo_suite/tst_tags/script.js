check.that(scriptArguments.length >= 0, "Script arguments: " + scriptArguments.join(" "));
