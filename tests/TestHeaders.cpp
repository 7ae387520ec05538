// Nothing but the headers that are compiled for it, which the test programs use.
