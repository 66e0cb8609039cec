log.info("Waiting for something that never comes");
snooze(60);
