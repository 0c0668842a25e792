function expect_error (err, id, varargin)
  % Fails unless ERR has the identifier ID and a message that contains every text given.
  assert (err.identifier, id);
  for k = 1:numel (varargin)
    if (isempty (strfind (err.message, varargin{k})))
      error ('"%s" missing from the message: %s', varargin{k}, err.message);
    end
  end
end
