# Without a configuration file: the places, and how to make one.
paf lookup "1 High St"
