// To come.
