// The module's code is that of the libraries it is linked of; EntryPointFunc draws it in.
