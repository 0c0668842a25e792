## Every operation by name and input count through the Octave function: the exact count
## reaches the operation, one more or one less is refused before it.

## The 186 rows of the operation table, in order: name and number of inputs.
%!function ops = operation_rows ()
%!  numeric = {'Double', 'Float', 'Int64', 'Uint64', 'Int', 'Uint', 'Short', 'Ushort', ...
%!             'Schar', 'Uchar'};
%!  data = [numeric, {'Text', 'String', 'Vlen'}];
%!  atts = [numeric, {'Ubyte', 'Text', 'String', 'Vlen'}];
%!  each = @(prefix, types, n) [strcat(prefix, types); num2cell(n * ones (1, numel (types)))];
%!  subsets = @(get, types) reshape ([strcat(get, '1', types); strcat(get, 'a', types); ...
%!                                    strcat(get, 's', types)], 1, []);
%!  gets = subsets ('getVar', data);
%!  puts = subsets ('putVar', data);
%!  puts = strrep (puts, 'putVar1Uint64', 'putVar1UInt64');
%!  puts = regexprep (puts, '^putVar1Uint$', 'putVar1UInt');
%!  ops = [{'abort'; 1}, {'close'; 1}, {'copyAtt'; 5}, {'pCreate'; 4}, {'create'; 2}, ...
%!         {'defDim'; 3}, {'defGrp'; 2}, {'defVar'; 4}, {'defVarChunking'; 4}, ...
%!         {'defVarDeflate'; 5}, {'defVarFill'; 4}, {'defVarFletcher32'; 3}, {'defVlen'; 3}, ...
%!         {'delAtt'; 3}, {'pEndDef'; 5}, {'endDef'; 1}, ...
%!         each('getAtt', atts, 3), {'getConstantNames'; 0}, each('getVar', data, 2), ...
%!         [gets; num2cell(repmat (3:5, 1, numel (data)))], ...
%!         {'inq'; 1}, {'inqAtt'; 3}, {'inqAttID'; 3}, {'inqAttName'; 3}, {'inqDim'; 2}, ...
%!         {'inqDimID'; 2}, {'inqDimIDs'; 2}, {'inqFormat'; 1}, {'inqGrpName'; 1}, ...
%!         {'inqGrpNameFull'; 1}, {'inqGrps'; 1}, {'inqGrpParent'; 1}, {'inqLibVers'; 0}, ...
%!         {'inqNcid'; 2}, {'inqVarID'; 2}, {'inqVar'; 2}, {'inqVarChunking'; 2}, ...
%!         {'inqVarDeflate'; 2}, {'inqVarFletcher32'; 2}, {'inqDimIDs'; 1}, ...
%!         {'inqUnlimDims'; 1}, {'inqUserType'; 2}, {'inqVlen'; 2}, {'inqVarIDs'; 1}, ...
%!         {'inqVarFill'; 2}, {'parameter'; 1}, {'pOpen'; 3}, {'open'; 2}, ...
%!         each('putAtt', atts, 5), each('putVar', data, 3), ...
%!         [puts; num2cell(repmat (4:6, 1, numel (data)))], ...
%!         {'redef'; 1}, {'renameAtt'; 4}, {'renameDim'; 3}, {'renameVar'; 3}, ...
%!         {'setDefaultFormat'; 1}, {'setFill'; 2}, {'sync'; 1}, {'setChunkCache'; 3}, ...
%!         {'getChunkCache'; 0}]';
%!endfunction

%!function id = error_id (varargin)
%!  id = '';
%!  try
%!    netcdflib (varargin{:});
%!  catch err
%!    id = err.identifier;
%!  end
%!endfunction

%!test
%! ops = operation_rows ();
%! assert (rows (ops), 186);
%! [names, first] = unique (ops(:, 1), 'first');
%! assert (numel (names), 185);
%! wrong = 'QUARNA:imagesci:validate:wrongNumberOfInputs';
%! for k = sort (first)'
%!   [name, n] = ops{k, :};
%!   ## Values no operation accepts as its first input end each call in its handler.
%!   reached = error_id (name, repmat ({struct()}, 1, n){:});
%!   assert (! any (strcmp (reached, {wrong, 'QUARNA:imagesci:netcdf:unrecognizedOperation'})), ...
%!           '%s with %d inputs: %s', name, n, reached);
%!   assert (error_id (name, cell (1, n + 1){:}), wrong, name);
%!   if (n > 0)
%!     assert (error_id (name, cell (1, n - 1){:}), wrong, name);
%!   end
%! end

## Only the first row of a name counts; spellings other than the table's are unknown.
%!test
%! assert (error_id ('inqDimIDs', 1), 'QUARNA:imagesci:validate:wrongNumberOfInputs');
%! for name = {'putVar1Uint64', 'putVar1Uint', 'getVar1UInt64', 'GetAttDouble', 'getattdouble'}
%!   assert (error_id (name{1}, 1, 2, 3, 4), 'QUARNA:imagesci:netcdf:unrecognizedOperation');
%! end
